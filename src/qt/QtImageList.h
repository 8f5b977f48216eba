// Velmora - a VelmoraImageList's images as the engine sees them: the
// ListImages collection (Count, Clear, Add, Item) and its items (Picture,
// Key, Tag, Index). Items are numbered from 1.
#pragma once

#include "layout/HostObject.h"

#include <QPointer>

class VelmoraImageList;

namespace velmora::qt {

class QtImageList : public HostObject {
public:
    explicit QtImageList(VelmoraImageList *list) : m_list(list) {}

    std::string typeName() const override { return "ListImages"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    GetResult getAt(std::string_view name, int index) override;
    // Clear(); Add(index, key, picture) with index and key optional (empty):
    // an index inserts before that image, a key must be unique.
    GetResult call(std::string_view method, const std::vector<Value> &args) override;

private:
    QPointer<VelmoraImageList> m_list;
};

} // namespace velmora::qt
