// A process that makes a client and its first call, of which one allocation fails; what is made once is made then.
#pragma once

#include <span>
#include <string>
#include <string_view>

/// The program's first argument where it is to be such a process.
constexpr std::string_view kFirstCall = "--first-call";

/// The others: the address, which allocation (0: none), "once" or "rest", and the file that is to be told how many
/// there were. 0, or which check failed.
int firstCall(std::span<char*> words);

/// The name of this program's file, for the test that starts it again.
void setProgram(std::string program);
