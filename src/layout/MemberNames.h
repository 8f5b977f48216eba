// Velmora - the names by which the engine reads, writes and calls the
// members of the host's objects, and the type names it compares: each
// declared once, here, so that a host (and a reader) finds them in one place.
#pragma once

namespace velmora {

namespace member {
inline constexpr char Add[] = "Add";
inline constexpr char BackColor[] = "BackColor";
inline constexpr char BorderWidth[] = "BorderWidth";
inline constexpr char ButtonHeight[] = "ButtonHeight";
inline constexpr char ButtonWidth[] = "ButtonWidth";
inline constexpr char Buttons[] = "Buttons";
inline constexpr char Clear[] = "Clear";
inline constexpr char Container[] = "Container";
inline constexpr char Count[] = "Count";
inline constexpr char DayFont[] = "DayFont";
inline constexpr char DisabledPicture[] = "DisabledPicture";
inline constexpr char DownPicture[] = "DownPicture";
inline constexpr char Font[] = "Font";
inline constexpr char GridFont[] = "GridFont";
inline constexpr char HeadFont[] = "HeadFont";
inline constexpr char Height[] = "Height";
inline constexpr char Hide[] = "Hide";
inline constexpr char Icon[] = "Icon";
inline constexpr char Icons[] = "Icons";
inline constexpr char Image[] = "Image";
inline constexpr char ImageHeight[] = "ImageHeight";
inline constexpr char ImageList[] = "ImageList";
inline constexpr char ImageWidth[] = "ImageWidth";
inline constexpr char Index[] = "Index";
inline constexpr char Item[] = "Item";
inline constexpr char Key[] = "Key";
inline constexpr char Left[] = "Left";
inline constexpr char ListImages[] = "ListImages";
inline constexpr char ListItems[] = "ListItems";
inline constexpr char Move[] = "Move";
inline constexpr char Name[] = "Name";
inline constexpr char Nodes[] = "Nodes";
inline constexpr char PaintPicture[] = "PaintPicture";
inline constexpr char Picture[] = "Picture";
inline constexpr char Refresh[] = "Refresh";
inline constexpr char ScaleHeight[] = "ScaleHeight";
inline constexpr char ScaleMode[] = "ScaleMode";
inline constexpr char ScaleWidth[] = "ScaleWidth";
inline constexpr char ScaleX[] = "ScaleX";
inline constexpr char ScaleY[] = "ScaleY";
inline constexpr char Show[] = "Show";
inline constexpr char Size[] = "Size";
inline constexpr char SmallIcon[] = "SmallIcon";
inline constexpr char SmallIcons[] = "SmallIcons";
inline constexpr char TabHeight[] = "TabHeight";
inline constexpr char TabMaxWidth[] = "TabMaxWidth";
inline constexpr char TabOrientation[] = "TabOrientation";
inline constexpr char TabPicture[] = "TabPicture";
inline constexpr char Tabs[] = "Tabs";
inline constexpr char TabsPerRow[] = "TabsPerRow";
inline constexpr char Tag[] = "Tag";
inline constexpr char TitleFont[] = "TitleFont";
inline constexpr char Top[] = "Top";
inline constexpr char Width[] = "Width";
inline constexpr char X1[] = "X1";
inline constexpr char X2[] = "X2";
inline constexpr char Y1[] = "Y1";
inline constexpr char Y2[] = "Y2";
} // namespace member

namespace hostType {
inline constexpr char SSTab[] = "SSTab";
inline constexpr char ImageList[] = "ImageList";
inline constexpr char Menu[] = "Menu";
inline constexpr char Form[] = "Form";
inline constexpr char MDIForm[] = "MDIForm";
} // namespace hostType

} // namespace velmora
