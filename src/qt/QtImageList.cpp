#include "qt/QtImageList.h"

#include "layout/MemberNames.h"
#include "qt/QtPicture.h"
#include "widgets/ImageListBinding.h"
#include "widgets/VelmoraImageList.h"

namespace velmora::qt {

namespace {

HostError gone()
{
    return hostError(HostErrc::Failed, "The image list is gone");
}

HostError outOfRange()
{
    return hostError(HostErrc::IndexOutOfRange, "Index out of bounds");
}

HostError keyTaken()
{
    return hostError(HostErrc::InvalidValue, "Key is not unique in collection");
}

// One image of a list, by position.
class QtImageListItem : public HostObject {
public:
    QtImageListItem(VelmoraImageList *list, int index) : m_list(list), m_index(index) {}

    std::string typeName() const override { return "ListImage"; }

    GetResult get(std::string_view name) override
    {
        if (!valid())
            return m_list ? outOfRange() : gone();
        if (name == member::Picture)
            return Value(QtPicture::make(m_list->icon(m_index)));
        if (name == member::Key)
            return Value(m_list->key(m_index).toStdString());
        if (name == member::Tag)
            return Value(m_list->tag(m_index).toStdString());
        if (name == member::Index)
            return Value(m_index + 1);
        return noSuchMember(name);
    }

    SetResult set(std::string_view name, const Value &value) override
    {
        if (!valid())
            return m_list ? outOfRange() : gone();
        if (name == member::Tag) {
            const auto text = value.toText();
            if (!text)
                return hostError(HostErrc::InvalidValue, "Type mismatch");
            m_list->setTag(m_index, QString::fromStdString(*text));
            return Done{};
        }
        if (name == member::Picture || name == member::Key || name == member::Index)
            return hostError(HostErrc::ReadOnly, "Property is read-only");
        return noSuchMember(name);
    }

private:
    bool valid() const { return m_list && m_index >= 0 && m_index < m_list->count(); }

    QPointer<VelmoraImageList> m_list;
    int m_index;
};

} // namespace

GetResult QtImageList::get(std::string_view name)
{
    if (!m_list)
        return gone();
    if (name == member::Count)
        return Value(m_list->count());
    return noSuchMember(name);
}

SetResult QtImageList::set(std::string_view name, const Value &)
{
    if (name == member::Count)
        return hostError(HostErrc::ReadOnly, "Property is read-only");
    return noSuchMember(name);
}

GetResult QtImageList::getAt(std::string_view name, int index)
{
    if (!m_list)
        return gone();
    if (name != "Item")
        return noSuchMember(name);
    if (index < 1 || index > m_list->count())
        return outOfRange();
    return Value(HostObjectPtr(std::make_shared<QtImageListItem>(m_list, index - 1)));
}

GetResult QtImageList::call(std::string_view method, const std::vector<Value> &args)
{
    if (!m_list)
        return gone();
    if (method == member::Clear) {
        // Controls still following the list would lose their images; the
        // pass takes every control of its form off first, so one following
        // now is one it does not know.
        if (widgets::ImageListBinding::anyFollowing(m_list))
            return hostError(HostErrc::Failed, "The image list cannot be modified while another control is bound to it");
        m_list->clear();
        return Value();
    }
    if (method != "Add")
        return noSuchMember(method);
    if (args.size() != 3)
        return hostError(HostErrc::InvalidValue, "Add takes an index, a key and a picture");
    int before = -1;
    if (!args[0].isEmpty()) {
        const auto index = args[0].toLong();
        if (!index || *index < 1 || *index > m_list->count() + 1)
            return outOfRange();
        before = *index - 1;
    }
    QString key;
    if (!args[1].isEmpty()) {
        const auto text = args[1].toText();
        if (!text)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        key = QString::fromStdString(*text);
    }
    // An empty picture is kept as an empty image (one Designer could not
    // read), so that every image after it keeps its number.
    QIcon icon;
    if (!QtPicture::iconFromValue(args[2], icon))
        return hostError(HostErrc::InvalidValue, "Invalid picture");
    const int at = m_list->add(icon, key, before);
    if (at < 0)
        return keyTaken();
    return Value(HostObjectPtr(std::make_shared<QtImageListItem>(m_list, at)));
}

} // namespace velmora::qt
