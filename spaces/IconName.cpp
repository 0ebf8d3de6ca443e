#include "spaces/IconName.h"

#include <algorithm>
#include <array>

#include "client/Text.h"

namespace wapi {

namespace {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::CStringView;

// The path of an address, without scheme and host, query and fragment.
CStringView pathOf(CStringView address)
{
    address = address.substr(0, std::min(address.find('?'), address.find('#')));
    const std::size_t scheme = address.find(wide("://"));
    if (scheme == CStringView::npos) return address;
    address.remove_prefix(scheme + 3);
    const std::size_t root = address.find('/');
    return root == CStringView::npos ? CStringView() : address.substr(root);
}

// What some system reads as more than a letter of a name.
bool isSpecial(CharT unit) noexcept
{
    constexpr std::string_view kSpecial = "\\/:*?\"<>|";
    return unit < 0x20 || unit == 0x7F ||
           (unit < 0x80 && kSpecial.find(static_cast<char>(unit)) != std::string_view::npos);
}

// A device's name names the device even with an extension behind it.
bool isDevice(const CStringT& name)
{
    const CStringT stem = name.substr(0, name.find_first_of(wide(". ")));
    constexpr std::array<std::string_view, 6> kDevices{"con", "prn", "aux", "nul", "conin$", "conout$"};
    if (std::any_of(kDevices.begin(), kDevices.end(), [&](auto device) { return equalsIgnoringCase(stem, device); }))
        return true;

    // Ports are numbered by digits, superscript ones included.
    if (stem.size() != 4) return false;
    const CharT digit = stem.back();
    const bool numbered = (digit >= '0' && digit <= '9') || digit == 0xB9 || digit == 0xB2 || digit == 0xB3;
    const CStringT port = stem.substr(0, 3);
    return numbered && (equalsIgnoringCase(port, "com") || equalsIgnoringCase(port, "lpt"));
}

}  // namespace

CStringT iconFileName(const CStringT& address)
{
    const CStringView path = pathOf(address);
    CStringT name(path.substr(path.rfind('/') + 1));
    if (name.empty() || equals(name, ".") || equals(name, "..")) return wide("temp");

    std::replace_if(name.begin(), name.end(), isSpecial, CharT{'_'});
    for (std::size_t at = name.find(wide("..")); at != CStringT::npos; at = name.find(wide(".."), at + 2))
        name.replace(at, 2, 2, CharT{'_'});
    if (name.back() == '.' || name.back() == ' ') name.back() = '_';  // Windows would drop it
    if (isDevice(name)) name.insert(name.begin(), CharT{'_'});
    return name;
}

}  // namespace wapi
