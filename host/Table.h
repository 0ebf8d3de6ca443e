// Rows of cells as lines of text, aligned by what a terminal shows.
#pragma once

#include <string>
#include <vector>

#include "host/Output.h"

namespace host {

using Row = std::vector<std::string>;

/// Columns that together are wider than the look allows are shortened, the widest first and the first one, by which a
/// record is named, last. None gets narrower than a few letters, be the line longer then.
std::string alignedTable(std::vector<Row> rows, const Look& look);

/// A name and its value on each line; nothing is shortened.
std::string alignedRecord(const std::vector<Row>& rows, const Look& look);

/// The text in the bold letters of a terminal, if the look has them.
std::string heading(const std::string& text, const Look& look);

}  // namespace host
