// Velmora - the per-control record of the design layout.
//
// One record per control (and one for the form itself), filled by the layout
// capture and partly rewritten by every resize. Field names follow the names
// the rest of the system uses for them, hence the unusual capitals.
#pragma once

#include "layout/Value.h"

#include <cstdint>
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
    std::string DayFontName, GridFontName, TitleFontName, HeadFontName;
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

    HostObjectPtr ImageList, IconsImageList, SmallIconsImageList;
    float TabHeight = 0;
    float ButtonWidth = 0, ButtonHeight = 0;
    float ImageListWidth = 0, ImageListHeight = 0;
    int ImageListCount = 0;
    HostObjectPtr Picture, DownPicture, DisabledPicture;

    // Indexed members. A setter grows its array to hold the index; a getter
    // beyond the array throws std::out_of_range.
    const Value &TabImage(int i) const { return at(m_tabImage, i); }
    void setTabImage(int i, Value v) { put(m_tabImage, i, std::move(v)); }
    const Value &ButtonImage(int i) const { return at(m_buttonImage, i); }
    void setButtonImage(int i, Value v) { put(m_buttonImage, i, std::move(v)); }
    const Value &NodeImage(int i) const { return at(m_nodeImage, i); }
    void setNodeImage(int i, Value v) { put(m_nodeImage, i, std::move(v)); }
    const Value &IconImage(int i) const { return at(m_iconImage, i); }
    void setIconImage(int i, Value v) { put(m_iconImage, i, std::move(v)); }
    const Value &SmallIconImage(int i) const { return at(m_smallIconImage, i); }
    void setSmallIconImage(int i, Value v) { put(m_smallIconImage, i, std::move(v)); }

    const HostObjectPtr &TabPicture(int i) const { return at(m_tabPicture, i); }
    void setTabPicture(int i, HostObjectPtr p) { put(m_tabPicture, i, std::move(p)); }
    const HostObjectPtr &ImageListPicture(int i) const { return at(m_imageListPicture, i); }
    void setImageListPicture(int i, HostObjectPtr p) { put(m_imageListPicture, i, std::move(p)); }
    const std::string &ImageListKey(int i) const { return at(m_imageListKey, i); }
    void setImageListKey(int i, std::string s) { put(m_imageListKey, i, std::move(s)); }
    const std::string &ImageListTag(int i) const { return at(m_imageListTag, i); }
    void setImageListTag(int i, std::string s) { put(m_imageListTag, i, std::move(s)); }

private:
    template <typename T>
    static const T &at(const std::vector<T> &v, int i)
    {
        return v.at(static_cast<std::size_t>(i < 0 ? v.size() : static_cast<std::size_t>(i)));
    }
    template <typename T>
    static void put(std::vector<T> &v, int i, T value)
    {
        if (i < 0)
            throw std::out_of_range("negative index");
        if (static_cast<std::size_t>(i) >= v.size())
            v.resize(static_cast<std::size_t>(i) + 1);
        v[static_cast<std::size_t>(i)] = std::move(value);
    }

    std::vector<Value> m_tabImage, m_buttonImage, m_nodeImage, m_iconImage, m_smallIconImage;
    std::vector<HostObjectPtr> m_tabPicture, m_imageListPicture;
    std::vector<std::string> m_imageListKey, m_imageListTag;
};

} // namespace velmora
