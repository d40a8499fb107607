// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/actions/ActionTable.h"

#include "keys/KeyTable.h"
#include "keys/MediaKeys.h"
#include "presentation/language/LanguageTables.h"

#include <algorithm>

namespace binding
{

namespace
{

constexpr const char *PanelNames[PanelCount] = {"page_2", "page_9", "page_3", "page_5", "page_6",
                                                "page_8", "page_4", "page_7", "page_10"};

constexpr char Functions[] = "KeyOptions";
constexpr char MouseButtons[] = "InsertEventOptions";

constexpr ActionRow function(const char *widget, Form form, KeyBinding binding, const char *text,
                             const char *key)
{
    return {widget, Panel::Functions, Panel::Debounce, form, binding, 0, text, Functions, key};
}

// The bits and texts of the mouse buttons come from the key vocabulary, as in macros.
constexpr ActionRow mouse(const char *widget, std::size_t button)
{
    const MouseButtonRow &row = MouseButtonTable[button];
    return {widget, Panel::Functions, Panel::Debounce, Form::ClassFirst, {MouseButton, row.bit, 0},
            0,      row.text,         MouseButtons,    row.textKey};
}

constexpr ActionRow opener(const char *widget, Panel shows, const char *text, const char *key)
{
    return {widget, Panel::Functions, shows, Form::Opener, {}, 0, text, Functions, key};
}

constexpr ActionRow detail(const char *widget, Panel place, KeyBinding binding, const char *text,
                           const char *key)
{
    return {widget, place, place, Form::ClassFirst, binding, 0, text, Functions, key};
}

constexpr ActionRow media(const char *widget, MediaKey key, const char *text)
{
    return {widget,        Panel::Media, Panel::Media, Form::Media, {SequenceClass, 0, 0},
            uint16_t(key), text,         Functions,    nullptr};
}

constexpr ActionRow lock(const char *widget, uint16_t dpi)
{
    return {widget, Panel::DpiLocks, Panel::DpiLocks, Form::Lock, {DpiLock, 0, 0},
            dpi,    nullptr,         nullptr,         nullptr};
}

} // namespace

// clang-format off
constexpr std::array<ActionRow, ActionCount> ActionRows = {{
    mouse("LeftKey_3", 0),
    mouse("RightKey_3", 1),
    mouse("MidKey", 2),
    mouse("BackKey_2", 3),
    mouse("ForWardKey", 4),
    function("DPI_2", Form::Class, {ReportRateSwitch, 0, 0}, "切换报告率", "7"),
    function("DPI_3", Form::Class, {ProfileSwitch, 0, 0}, "配置切换", "9"),
    function("DPI_6", Form::Fire, {FireKeyClass, 10, 3}, "火力键", "4"),
    function("DPI_8", Form::Combination, {SequenceClass, 0, 0}, "组合键", "5"),
    function("DPI_5", Form::Class, {Disabled, 0, 0}, "待定义按键", "10"),
    opener("DPI_13", Panel::Scroll, "上下滚动", "B"),
    opener("DPI_11", Panel::SideScroll, "左右滚动", "3"),
    opener("DPI_4", Panel::DpiLocks, "DPI锁定", "12"),
    opener("DPI_9", Panel::Lights, "灯光", "11"),
    opener("DPI_7", Panel::DpiSteps, "DPI切换", "2"),
    opener("DPI_12", Panel::Media, "多媒体", "1005"),
    opener("DPI_10", Panel::Macros, "宏", "6"),

    detail("VolumeUp_14", Panel::Scroll, {VerticalScroll, 1, 0}, "上滚", "ScrollUp"),
    detail("VolumeDown_14", Panel::Scroll, {VerticalScroll, 2, 0}, "下滚", "ScrollDown"),

    detail("VolumeUp_2", Panel::SideScroll, {HorizontalScroll, 1, 0}, "左滚", "ScrollLeft"),
    detail("VolumeDown_2", Panel::SideScroll, {HorizontalScroll, 2, 0}, "右滚", "ScrollRight"),

    lock("VolumeUp_11", 100),
    lock("VolumeUp_12", 200),
    lock("VolumeUp_13", 300),
    lock("VolumeUp_16", 400),
    lock("VolumeUp_15", 500),
    lock("VolumeUp_19", 600),
    lock("VolumeUp_20", 700),
    lock("VolumeUp_22", 800),
    lock("VolumeUp_18", 900),
    lock("VolumeUp_24", 1000),
    lock("VolumeUp_23", 1100),
    lock("VolumeUp_21", 1200),

    detail("VolumeUp_4", Panel::Lights, {LightSwitch, 0, 0}, "开/关所有装饰灯", "13"),
    detail("VolumeUp_5", Panel::Lights, {LightSwitch, 1, 0}, "开/关DPI指示灯", "14"),
    detail("VolumeUp_6", Panel::Lights, {LightSwitch, 3, 0}, "开/关灯带", "15"),
    detail("VolumeUp_7", Panel::Lights, {LightSwitch, 4, 0}, "循环切换灯带效果", "16"),

    detail("VolumeUp_8", Panel::DpiSteps, {DpiSwitch, 1, 0}, "DPI循环", "DPICycle"),
    detail("VolumeUp_9", Panel::DpiSteps, {DpiSwitch, 2, 0}, "DPI+", "DPI+"),
    detail("VolumeUp_10", Panel::DpiSteps, {DpiSwitch, 3, 0}, "DPI-", "DPI-"),

    media("Player", MediaKey::Player, "播放器"),
    media("StartPause_2", MediaKey::PlayPause, "播放/暂停"),
    media("BackMusic_2", MediaKey::NextTrack, "下一曲"),
    media("TopMusic_2", MediaKey::PreviousTrack, "上一曲"),
    media("Mute", MediaKey::Stop, "停止播放"),
    media("VolumeUp", MediaKey::Mute, "静音"),
    media("VolumeDown", MediaKey::VolumeUp, "音量加"),
    media("VolumeDown_4", MediaKey::VolumeDown, "音量减"),
    media("VolumeDown_5", MediaKey::Mail, "邮件"),
    media("VolumeDown_6", MediaKey::Calculator, "计算器"),
    media("VolumeDown_3", MediaKey::Files, "我的电脑"),
    media("VolumeDown_8", MediaKey::HomePage, "主页"),
    media("VolumeDown_9", MediaKey::Search, "搜索"),
    media("VolumeDown_7", MediaKey::Forward, "前进"),
    media("VolumeDown_10", MediaKey::Back, "后退"),
    media("VolumeDown_12", MediaKey::StopLoading, "停止网页"),
    media("VolumeDown_13", MediaKey::Reload, "刷新"),
    media("VolumeDown_11", MediaKey::Bookmarks, "收藏夹"),
}};
// clang-format on

namespace
{

// The low byte of the usage identifies a media key.
constexpr bool mediaCodesDiffer()
{
    for (std::size_t i = 0; i < ActionRows.size(); ++i)
        for (std::size_t j = i + 1; j < ActionRows.size(); ++j)
            if (ActionRows[i].form == Form::Media && ActionRows[j].form == Form::Media &&
                mediaCode(ActionRows[i].value) == mediaCode(ActionRows[j].value))
                return false;
    return true;
}
static_assert(mediaCodesDiffer());

template <typename Test> const ActionRow *firstRow(Test test)
{
    const auto found = std::find_if(ActionRows.begin(), ActionRows.end(), test);
    return found == ActionRows.end() ? nullptr : &*found;
}

QString textKey(const ActionRow &row)
{
    if (row.key)
        return QString::fromLatin1(row.key);
    const QString digits = QString::number(row.value, 16).toUpper();
    return QStringLiteral("0x") + digits.rightJustified(4, QLatin1Char('0'));
}

} // namespace

QString panelName(Panel panel) { return QString::fromLatin1(PanelNames[int(panel)]); }

const ActionRow *actionOf(const QString &widget)
{
    return firstRow([&](const ActionRow &row) { return widget == QLatin1String(row.widget); });
}

const ActionRow *openerOf(Panel panel)
{
    return firstRow([=](const ActionRow &row) { return row.form == Form::Opener && row.shows == panel; });
}

QString actionText(const ActionRow &row, int language)
{
    QString translated = row.choices ? language::choice(row.choices, textKey(row), language) : QString();
    if (!translated.isEmpty())
        return translated;
    return row.text ? QString::fromUtf8(row.text) : QString::number(row.value);
}

const ActionRow *mediaAction(uint8_t code)
{
    return firstRow(
        [=](const ActionRow &row) { return row.form == Form::Media && mediaCode(row.value) == code; });
}

const ActionRow *lockAction(int dpi)
{
    return firstRow([=](const ActionRow &row) { return row.form == Form::Lock && row.value == dpi; });
}

const ActionRow *combinationAction()
{
    return firstRow([](const ActionRow &row) { return row.form == Form::Combination; });
}

} // namespace binding
