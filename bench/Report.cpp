#include "bench/Report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>

namespace kzn::bench {

namespace {

std::string decimal(double number, int digits)
{
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, number);
    return text.data();
}

std::string told(const Ratio& ratio)
{
    return decimal(ratio.value, 2) + " (" + decimal(ratio.low, 2) + " to " + decimal(ratio.high, 2) + ")";
}

std::string told(double number, std::string_view unit)
{
    std::string text = decimal(number, number == std::floor(number) ? 0 : 2);
    if (!unit.empty()) text.append(" ").append(unit);
    return text;
}

void printRow(std::string_view name, std::string_view measured, std::string_view limit, std::string_view verdict)
{
    std::cout << name << '\t' << measured << '\t' << limit << '\t' << verdict << std::endl;
}

}  // namespace

Report::Report(int argc, char** argv)
    : quick_(std::any_of(argv + 1, argv + argc,
                         [](const char* argument) { return std::string_view(argument) == "--quick"; }))
{
}

void Report::atMost(std::string_view name, const Ratio& measured, double limit)
{
    judge(name, told(measured), "<= " + decimal(limit, 2), measured.value <= limit, !quick_);
}

void Report::atLeast(std::string_view name, const Ratio& measured, double limit)
{
    judge(name, told(measured), ">= " + decimal(limit, 2), measured.value >= limit, !quick_);
}

void Report::near(std::string_view name, const Ratio& measured, double share)
{
    const std::string limit = decimal(1 - share, 2) + " to " + decimal(1 + share, 2);
    judge(name, told(measured), limit, std::abs(measured.value - 1) <= share, !quick_);
}

void Report::atMost(std::string_view name, double measured, double limit, std::string_view unit)
{
    judge(name, told(measured, unit), "<= " + told(limit, unit), measured <= limit);
}

void Report::exactly(std::string_view name, std::size_t measured, std::size_t wanted)
{
    judge(name, std::to_string(measured), std::to_string(wanted), measured == wanted);
}

void Report::note(std::string_view name, const Ratio& measured)
{
    printRow(name, told(measured), "-", "-");
}

void Report::note(std::string_view name, double measured, std::string_view unit)
{
    printRow(name, told(measured, unit), "-", "-");
}

void Report::require(bool holds, std::string_view what)
{
    if (holds) return;
    failed_ = true;
    std::cerr << "the measurement is void: " << what << '\n';
}

void Report::judge(std::string_view name, const std::string& measured, const std::string& limit, bool held, bool counts)
{
    if (!counts) {
        printRow(name, measured, limit, "not judged");
        return;
    }
    printRow(name, measured, limit, held ? "held" : "NOT held");
    if (!held) failed_ = true;
}

}  // namespace kzn::bench
