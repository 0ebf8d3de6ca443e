#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "service/http/Message.h"
#include "service/tape/Scan.h"
#include "service/tape/Secrets.h"
#include "service/tape/Tape.h"

namespace service::tape {

// Writes down what a host and a service say to each other. Credentials, passwords and tokens never reach the tape;
// what the service made becomes a placeholder, wherever it stands. What is found out later is mended before.
class Scribe {
public:
    // How the service's address may be spelled.
    explicit Scribe(std::vector<std::string> serverSpellings) : server_(std::move(serverSpellings)) {}

    // Says why an exchange is left out: nobody knows what secrets are in its reply, or no tape can hold it. Empty where
    // it is on the tape.
    std::string take(const http::Request& request, const http::Response& response);

    // The whole tape: its title and each exchange, and as one text.
    const std::vector<std::string>& texts() const { return texts_; }
    std::string text() const;

    std::size_t size() const { return exchanges_.size(); }

private:
    // A value that never stands on the tape.
    struct Hidden {
        Piece piece;
        std::string value;
        std::vector<std::string> spellings;
        Beside beside;
    };

    void learnRequest(const http::Request& request);
    void learnReply(const http::Response& response);
    void hideOfRequest(const std::vector<Found>& found);
    void hideOfReply(const std::vector<Found>& found);
    void hide(Kind kind, const Found& found);
    void forgetIdentifiersWith(const Hidden& hidden);
    void askFor(std::string_view text);
    void meet(std::string_view reply);
    void mark(Template& text, bool isReply);
    void markTokens(Template& text, bool isReply);
    void appendMarked(Template& out, const std::string& text, bool isReply);
    Piece pieceOf(std::string_view token, bool isReply);
    Piece identifier(std::string_view token);
    bool holdsNews(const Exchange& exchange) const;
    void mend();

    std::vector<std::string> server_;
    std::vector<Exchange> exchanges_;
    std::vector<std::string> texts_{titleText()};  // and that of each exchange
    std::vector<Hidden> hidden_;
    std::map<std::string, int, std::less<>> identifiers_;
    std::set<int> written_;                     // the identifiers whose value stands on the tape
    std::set<std::string, std::less<>> asked_;  // the tokens of all requests
    std::set<std::string, std::less<>> met_;    // what first came from the service
    int credentials_ = 0;
    int secrets_ = 0;
    int lastIdentifier_ = 0;
    std::vector<std::string> news_;  // found out just now, and may stand in what is written already
};

}  // namespace service::tape
