// Whole files, read and written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "pvutil/StringEx.h"

namespace kzn::pvutil {

/// What stands behind the last separator of a path: "/" and "\\" on Windows, "/" elsewhere.
stringex::CStringT fileNameOf(const stringex::CStringT& path);

enum class FileResult { done, failed, tooLarge };

/// Reads a regular file of at most `most` bytes into `bytes`, with one allocation.
FileResult readFile(const stringex::CStringT& path, std::size_t most, std::string& bytes);

/// Writes a file under a passing name and gives it `path` when it is whole, in the place of one that stands there: no
/// reader ever sees half of it, and after a failure nothing is left behind.
FileResult replaceFile(const stringex::CStringT& path, std::string_view bytes);

}  // namespace kzn::pvutil
