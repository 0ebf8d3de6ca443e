// The tabs that divide a workspace.
#pragma once

#include <utility>

#include "pvutil/StringEx.h"

class CZelTab {
public:
    CZelTab() = default;
    CZelTab(const CZelTab&) = default;
    CZelTab(CZelTab&&) = default;
    CZelTab& operator=(const CZelTab&) = default;
    CZelTab& operator=(CZelTab&&) = default;
    virtual ~CZelTab() = default;

    void SetID(CStringT id) { id_ = std::move(id); }
    CStringT GetID() const { return id_; }

    void SetName(CStringT name) { name_ = std::move(name); }
    CStringT GetName() const { return name_; }

    /// The service's tab type, a number as text: 0 plain, 1 discussion, 2 files.
    void SetType(CStringT type) { type_ = std::move(type); }
    CStringT GetType() const { return type_; }

    /// The tab's place in the order of tabs.
    void SetTabPos(int position) { position_ = position; }
    int GetTabPos() const { return position_; }

private:
    CStringT id_;
    CStringT name_;
    CStringT type_;
    int position_ = 0;
};
