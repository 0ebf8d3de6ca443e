#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "service/tape/Template.h"

namespace service::tape {

// What stands for the placeholders of a tape while it is played.
class Bindings {
public:
    // Null where nothing stands for it yet.
    const std::string* find(const Piece& piece) const;

    void bind(const Piece& piece, std::string value);

    void forget(const Piece& piece);

    // The values of credentials and secrets.
    std::vector<std::string> secrets() const;

    // Empty ones, which find what these have too, and live no longer.
    Bindings trial() const;

    // What was bound on trial.
    void adopt(Bindings trial);

private:
    const Bindings* base_ = nullptr;
    std::map<std::pair<Kind, int>, std::string> values_;
};

// How far a text is what a template says.
struct Fit {
    bool fits = false;
    std::size_t at = 0;  // the first byte of the text that differs
    std::string wanted;  // what the tape has there
};

// Compares. A placeholder that is bound stands for its value, in whatever spelling; one that is not takes what is
// there, which is bound. {any} takes anything, and {time} any moment.
Fit fit(const Template& wanted, std::string_view text, Place place, Bindings& bindings);

// The text of a template. Throws std::out_of_range, with the placeholder's name, where one is not bound.
std::string rendered(const Template& text, Place place, const Bindings& bindings);

}  // namespace service::tape
