#include "tests/hostile/Rows.h"

#include <utility>

namespace kzn::test {

std::string repeated(const std::string& text, std::size_t times)
{
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

std::string replyWith(const std::string& statusLine, const std::string& lines)
{
    return statusLine + "\r\nContent-Type: text/xml\r\n" + lines +
           "Content-Length: " + std::to_string(kSuccess.size()) + "\r\n\r\n" + kSuccess;
}

std::string replyOf(const std::string& document, const std::string& contentType)
{
    return replyText(200, contentType, document);
}

Row sends(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine)
{
    return {std::move(name), Script().send(std::move(bytes)), outcome, underWine};
}

Row closes(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine)
{
    return {std::move(name), Script().send(std::move(bytes)).close(), outcome, underWine};
}

Row stalls(std::string name, std::string bytes, Outcome outcome, std::optional<Outcome> underWine)
{
    return {std::move(name), Script().send(std::move(bytes)).stall(), outcome, underWine, true};
}

std::vector<Row> allRows()
{
    std::vector<Row> all;
    for (auto subject : {&statusRows, &headRows, &bodyRows, &textRows, &endRows})
        for (Row& row : subject()) all.push_back(std::move(row));
    return all;
}

}  // namespace kzn::test
