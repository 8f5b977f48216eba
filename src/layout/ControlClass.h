// Velmora - the per-control record of the design layout.
//
// One record per control (and one for the form itself), filled by the layout
// capture and partly rewritten by every resize. Field names follow the names
// the rest of the system uses for them, hence the unusual capitals.
#pragma once

#include "layout/Value.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {

// What kind of control a record describes; decides capture and placement.
enum SpecialControlType : int {
    SctOrdinary = 0,
    SctOnTabPage = 1,
    SctLine = 2,
    SctTabControl = 3,
    SctImageList = 4,
    SctUnused = 5, // reserved; nothing assigns it
    SctForm = 6
};

class ControlClass {
public:
    // Design geometry in the container's units, rewritten when the
    // application moves the control at run time.
    float Left = 0, Top = 0, Width = 0, Height = 0;
    float X1 = 0, X2 = 0, Y1 = 0, Y2 = 0;
    // The container's inner size at capture.
    float FormWidth = 0, FormHeight = 0;
    float xScale = 0, yScale = 0;
    float Right = 0, Bottom = 0;
    // The geometry the component itself gave the control at the last pass.
    float LastLeft = 0, LastTop = 0, LastWidth = 0, LastHeight = 0;

    float FontSize = 0;
    std::string FontName;
    float DayFontSize = 0, GridFontSize = 0, TitleFontSize = 0, HeadFontSize = 0;
    // Recorded only: nothing reads the names back.
    const std::string &DayFontName() const { return field(&Lists::dayFontName); }
    void setDayFontName(std::string s) { setField(&Lists::dayFontName, std::move(s)); }
    const std::string &GridFontName() const { return field(&Lists::gridFontName); }
    void setGridFontName(std::string s) { setField(&Lists::gridFontName, std::move(s)); }
    const std::string &TitleFontName() const { return field(&Lists::titleFontName); }
    void setTitleFontName(std::string s) { setField(&Lists::titleFontName, std::move(s)); }
    const std::string &HeadFontName() const { return field(&Lists::headFontName); }
    void setHeadFontName(std::string s) { setField(&Lists::headFontName, std::move(s)); }
    float BorderWidth = 0;

    // The object the record was captured from, and the last pass that met it.
    std::uint64_t Owner = 0;
    unsigned SeenInPass = 0;

    int SpecialControlType = SctOrdinary;
    int ID = 0;
    bool ControlIsScaleable = false;
    bool GraphicIsScaleable = false;
    bool ControlHasTabs = false;
    bool ControlHasButtons = false;
    bool ControlHasNodes = false;
    bool ControlHasImageList = false;
    bool ControlHasTwoImageLists = false;

    // The image lists bound to the control, remembered across a rebuild.
    const HostObjectPtr &ImageList() const { return field(&Lists::imageList); }
    void setImageList(HostObjectPtr p) { setField(&Lists::imageList, std::move(p)); }
    const HostObjectPtr &IconsImageList() const { return field(&Lists::iconsImageList); }
    void setIconsImageList(HostObjectPtr p) { setField(&Lists::iconsImageList, std::move(p)); }
    const HostObjectPtr &SmallIconsImageList() const { return field(&Lists::smallIconsImageList); }
    void setSmallIconsImageList(HostObjectPtr p) { setField(&Lists::smallIconsImageList, std::move(p)); }
    float TabHeight = 0;
    float ButtonWidth = 0, ButtonHeight = 0;
    float ImageListWidth = 0, ImageListHeight = 0;
    int ImageListCount = 0;
    HostObjectPtr Picture, DownPicture, DisabledPicture;

    // Indexed members. A setter grows its array to hold the index; a getter
    // beyond the array throws std::out_of_range.
    const Value &TabImage(int i) const { return at(&Lists::tabImage, i); }
    void setTabImage(int i, Value v) { put(&Lists::tabImage, i, std::move(v)); }
    const Value &ButtonImage(int i) const { return at(&Lists::buttonImage, i); }
    void setButtonImage(int i, Value v) { put(&Lists::buttonImage, i, std::move(v)); }
    const Value &NodeImage(int i) const { return at(&Lists::nodeImage, i); }
    void setNodeImage(int i, Value v) { put(&Lists::nodeImage, i, std::move(v)); }
    const Value &IconImage(int i) const { return at(&Lists::iconImage, i); }
    void setIconImage(int i, Value v) { put(&Lists::iconImage, i, std::move(v)); }
    const Value &SmallIconImage(int i) const { return at(&Lists::smallIconImage, i); }
    void setSmallIconImage(int i, Value v) { put(&Lists::smallIconImage, i, std::move(v)); }

    const HostObjectPtr &TabPicture(int i) const { return at(&Lists::tabPicture, i); }
    void setTabPicture(int i, HostObjectPtr p) { put(&Lists::tabPicture, i, std::move(p)); }
    const HostObjectPtr &ImageListPicture(int i) const { return at(&Lists::imageListPicture, i); }
    void setImageListPicture(int i, HostObjectPtr p) { put(&Lists::imageListPicture, i, std::move(p)); }
    const std::string &ImageListKey(int i) const { return at(&Lists::imageListKey, i); }
    void setImageListKey(int i, std::string s) { put(&Lists::imageListKey, i, std::move(s)); }
    const std::string &ImageListTag(int i) const { return at(&Lists::imageListTag, i); }
    void setImageListTag(int i, std::string s) { put(&Lists::imageListTag, i, std::move(s)); }

private:
    // Only calendars, tab strips, toolbars, trees, list views and image
    // lists fill these; most records never allocate them.
    struct Lists {
        std::vector<Value> tabImage, buttonImage, nodeImage, iconImage, smallIconImage;
        std::vector<HostObjectPtr> tabPicture, imageListPicture;
        std::vector<std::string> imageListKey, imageListTag;
        std::string dayFontName, gridFontName, titleFontName, headFontName;
        HostObjectPtr imageList, iconsImageList, smallIconsImageList;
    };

    // A single member of the rarely used part; setting it to its empty
    // value allocates nothing.
    template <typename T>
    const T &field(T Lists::*member) const
    {
        static const T none{};
        return m_lists ? (*m_lists).*member : none;
    }
    template <typename T>
    void setField(T Lists::*member, T value)
    {
        if (value == T{} && !m_lists)
            return;
        if (!m_lists)
            m_lists = std::make_unique<Lists>();
        (*m_lists).*member = std::move(value);
    }

    template <typename T>
    const T &at(std::vector<T> Lists::*list, int i) const
    {
        static const std::vector<T> none;
        const std::vector<T> &v = m_lists ? (*m_lists).*list : none;
        return v.at(static_cast<std::size_t>(i < 0 ? v.size() : static_cast<std::size_t>(i)));
    }
    template <typename T>
    void put(std::vector<T> Lists::*list, int i, T value)
    {
        if (i < 0)
            throw std::out_of_range("negative index");
        if (!m_lists)
            m_lists = std::make_unique<Lists>();
        std::vector<T> &v = (*m_lists).*list;
        if (static_cast<std::size_t>(i) >= v.size())
            v.resize(static_cast<std::size_t>(i) + 1);
        v[static_cast<std::size_t>(i)] = std::move(value);
    }

    std::unique_ptr<Lists> m_lists;
};

} // namespace velmora
