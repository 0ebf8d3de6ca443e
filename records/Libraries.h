// Libraries of workspace templates and of applications.
#pragma once

#include <vector>

#include "pvutil/StringEx.h"
#include "records/Number.h"

class CZelTemplateItem {
public:
    CZelTemplateItem() = default;
    CZelTemplateItem(const CZelTemplateItem&) = default;
    CZelTemplateItem(CZelTemplateItem&&) = default;
    CZelTemplateItem& operator=(const CZelTemplateItem&) = default;
    CZelTemplateItem& operator=(CZelTemplateItem&&) = default;
    virtual ~CZelTemplateItem() = default;

    /// The number in the text.
    void SetType(const CStringT& text) { type_ = toInt(text); }
    int GetType() const { return type_; }

    CStringT name;
    CStringT ID;
    CStringT description;

private:
    int type_ = 0;
};

struct library_t {
    CStringT name;
    CStringT ID;
    int type = 0;  ///< 1, 2 or 3; 0 for any other
    std::vector<CZelTemplateItem> templates;
};

struct library_app_t {
    CStringT name;
    CStringT ID;
    CStringT currentDir;
    CStringT status;
    CStringT package;
    CStringT appType;  ///< this and the identity are told of top-level applications only
    CStringT identityDescription;
    CStringT identityName;
    bool topLevel = false;
};

struct library2_t {
    CStringT name;
    CStringT ID;
    CStringT type;
    std::vector<library_app_t> apps;
};
