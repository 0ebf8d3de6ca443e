// A wire example as its file describes it; tests/wire/README.md is the description of the format.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct WireField {
    std::string name;
    std::string value;
};

using WireFields = std::vector<WireField>;
using WireLines = std::vector<std::string>;

struct WireRequest {
    std::string method = "POST";
    std::string target = "/kznconnect/op.do";
    WireFields headers;
    std::string body;
};

struct WireReply {
    bool connection = true;
    int status = 200;
    std::string contentType = "text/xml";
    std::string body;
};

struct WireMessage {
    std::string reason;
    std::string exceptionID;
    std::string response;
};

struct WireCase {
    std::string title;
    std::string operation;
    WireFields arguments;
    std::optional<WireRequest> request;  // none: nothing is sent
    std::optional<WireReply> reply;
    int result = 0;
    std::optional<WireLines> outputs;  // none: as before
    WireFields client;
    bool messageUnchanged = false;
    WireMessage message;
    std::optional<WireLines> trace;
    std::optional<WireLines> log;
};

/// What is wrong with a file, and in which line.
class WireFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

WireCase parseWireCase(std::string_view text);

/// `name` is relative to `folder`, with forward slashes and without ".txt".
WireCase readWireCase(const std::filesystem::path& folder, const std::string& name);

/// The names of all examples under `folder`, sorted.
std::vector<std::string> wireCaseNames(const std::filesystem::path& folder);

/// The name as a test may be called.
std::string wireTestName(std::string name);

/// Puts `value` in the place of every `{name}`.
std::string withPlaceholder(std::string text, const std::string& name, const std::string& value);
