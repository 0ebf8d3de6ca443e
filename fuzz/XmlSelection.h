// A handler with selectors and lists of every kind, which remembers what it was told.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "pvutil/StringEx.h"
#include "pvutil/XmlHandler.h"

namespace fuzz {

constexpr std::array<const char*, 8> kSelectedPaths = {"/a/",     "/a/b/",   "/a/b/c/",  "/a/b/c/d/",
                                                       "/a/b/b/", "/a/c/d/", "/a/bb/a/", "/kznapi/response/result/"};

class XmlSelection : public EXPAT_EX::CXMLHandler {
public:
    XmlSelection()
    {
        using kzn::pvutil::stringex::FromUtf8;
        for (std::size_t at = 0; at < kSelectedPaths.size(); ++at) {
            AddTextSelecter(FromUtf8(kSelectedPaths[at]), &texts[at]);
            AddTextSelecter(FromUtf8(kSelectedPaths[at]), &again[at]);
        }
        AddNodeListEventListener(1, FromUtf8("/a/"));
        AddNodeListEventListener(2, FromUtf8("/a/b/"));
        AddNodeListEventListener(3, FromUtf8("/a/b/"));
        AddNodeListEventListener(4, FromUtf8("/a/b/c/"));
    }

    void OnStartNodeListEvent(unsigned id) override { events.push_back(static_cast<int>(id)); }

    void OnEndNodeListEvent(unsigned id) override
    {
        events.push_back(-static_cast<int>(id));
        textsAtEnds += texts[1];
        textsAtEnds += texts[2];
    }

    std::array<CStringT, kSelectedPaths.size()> texts;
    std::array<CStringT, kSelectedPaths.size()> again;
    std::vector<int> events;
    CStringT textsAtEnds;
};

}  // namespace fuzz
