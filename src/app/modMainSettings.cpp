// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The settings that are kept between runs: names, defaults and stored forms.

#include "app/AppPorts.h"
#include "app/modHelp.h"
#include "app/modMain.h"
#include "document/Globals.h"
#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/SettingsStore.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

const QString settingsSection = u"Settings"_s;
const QString fontSection = u"OutlineFont"_s;
// What a window does beyond having a place. Only what is so is stored.
const QString windowsSection = u"Windows"_s;

constexpr QLatin1StringView mainMaximised("MainMaximised");
constexpr QLatin1StringView documentsMaximised("DocumentsMaximised");
constexpr QLatin1StringView panes("Panes");
// Asked for by the first settings, and forgotten once there are the user's own.
constexpr QLatin1StringView fitToScreen("FitToScreen");

constexpr qint64 defaultFontSize = 10 * clsFont::point;

struct BooleanSetting {
    QLatin1StringView key;
    bool Options::*option;
};

constexpr std::array booleanSettings{
    BooleanSetting{QLatin1StringView("AutoLabelEdit"), &Options::AutoLabelEdit},
    BooleanSetting{QLatin1StringView("AutoSplit"), &Options::AutoSplit},
    BooleanSetting{QLatin1StringView("Backup"), &Options::Backup},
    BooleanSetting{QLatin1StringView("PreserveSettings"), &Options::PreserveSettings},
    BooleanSetting{QLatin1StringView("StartWithNewDocument"), &Options::StartWithNewDocument},
    BooleanSetting{QLatin1StringView("StartWithLatestDocuments"), &Options::StartWithLatestDocuments},
    BooleanSetting{QLatin1StringView("ViewStatusbar"), &Options::ViewStatusbar},
    BooleanSetting{QLatin1StringView("ViewToolbar"), &Options::ViewToolbar},
};

struct PlaceSetting {
    QLatin1StringView key;
    float WindowPlace::*value;
    float byDefault;
};

constexpr std::array placeSettings{
    PlaceSetting{QLatin1StringView("MainLeft"), &WindowPlace::left, 1000},
    PlaceSetting{QLatin1StringView("MainTop"), &WindowPlace::top, 1000},
    PlaceSetting{QLatin1StringView("MainWidth"), &WindowPlace::width, 6500},
    PlaceSetting{QLatin1StringView("MainHeight"), &WindowPlace::height, 6500},
};

// Where a maximised main window goes when it is that no longer. Stored for one only.
constexpr std::array normalPlaceSettings{
    PlaceSetting{QLatin1StringView("NormalLeft"), &WindowPlace::left, 1000},
    PlaceSetting{QLatin1StringView("NormalTop"), &WindowPlace::top, 1000},
    PlaceSetting{QLatin1StringView("NormalWidth"), &WindowPlace::width, 6500},
    PlaceSetting{QLatin1StringView("NormalHeight"), &WindowPlace::height, 6500},
};

std::optional<QString> stored(const QString &section, QLatin1StringView key)
{
    return appPorts().settings->value(section, key);
}

void store(const QString &section, QLatin1StringView key, const QString &value)
{
    appPorts().settings->setValue(section, key, value);
}

bool storedBoolean(const QString &section, QLatin1StringView key, bool byDefault)
{
    const std::optional<QString> text = stored(section, key);
    return text ? Numbers::toBoolean(*text) : byDefault;
}

float storedSingle(const QString &section, QLatin1StringView key, float byDefault)
{
    const std::optional<QString> text = stored(section, key);
    if (!text)
        return byDefault;
    const double value = Numbers::toNumber(*text);
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max()))
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<float>(value);
}

// The shortest decimal text that reads back as the same single-precision number.
QString fromSingle(float value)
{
    std::array<char, 64> text;
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed);
    return QString::fromLatin1(text.data(), end.ptr - text.data());
}

void loadFont(clsFont &font)
{
    font.setBold(storedBoolean(fontSection, QLatin1StringView("Bold"), false));
    font.setItalic(storedBoolean(fontSection, QLatin1StringView("Italic"), false));
    font.setName(stored(fontSection, QLatin1StringView("Name")).value_or(QString()));
    const std::optional<QString> size = stored(fontSection, QLatin1StringView("Size"));
    font.setSize(size ? Numbers::toFixedPoint(*size) : defaultFontSize);
    font.setStrikeThrough(storedBoolean(fontSection, QLatin1StringView("StrikeThrough"), false));
    font.setUnderline(storedBoolean(fontSection, QLatin1StringView("Underline"), false));
}

void saveFont(const clsFont &font)
{
    store(fontSection, QLatin1StringView("Bold"), Numbers::fromBoolean(font.Bold()));
    store(fontSection, QLatin1StringView("Italic"), Numbers::fromBoolean(font.Italic()));
    store(fontSection, QLatin1StringView("Name"), font.Name());
    store(fontSection, QLatin1StringView("Size"), Numbers::fromFixedPoint(font.Size()));
    store(fontSection, QLatin1StringView("StrikeThrough"), Numbers::fromBoolean(font.StrikeThrough()));
    store(fontSection, QLatin1StringView("Underline"), Numbers::fromBoolean(font.Underline()));
}

void loadPlace()
{
    WindowPlace place;
    for (const PlaceSetting &setting : placeSettings)
        place.*setting.value = storedSingle(settingsSection, setting.key, setting.byDefault);
    const bool maximised = storedBoolean(windowsSection, mainMaximised, false);
    if (maximised) {
        for (const PlaceSetting &setting : normalPlaceSettings)
            place.*setting.value = storedSingle(windowsSection, setting.key, setting.byDefault);
    }
    appPorts().mainWindow->setPlace(place);
    if (storedBoolean(windowsSection, fitToScreen, false))
        appPorts().mainWindow->fitToScreen();
    appPorts().mainWindow->setMaximised(maximised, storedBoolean(windowsSection, documentsMaximised, false));
    appPorts().mainWindow->setPanes(stored(windowsSection, panes).value_or(QString()));
}

void saveStates()
{
    const auto storeIf = [](bool wanted, QLatin1StringView key, const QString &value) {
        if (wanted)
            store(windowsSection, key, value);
        else
            appPorts().settings->removeValue(windowsSection, key);
    };
    const WindowStates states = appPorts().mainWindow->states();
    storeIf(states.mainMaximised, mainMaximised, Numbers::fromBoolean(true));
    storeIf(states.documentsMaximised, documentsMaximised, Numbers::fromBoolean(true));
    storeIf(!states.panes.isEmpty(), panes, states.panes);
    for (const PlaceSetting &setting : normalPlaceSettings)
        storeIf(states.mainMaximised, setting.key, fromSingle(states.normalPlace.*setting.value));
    appPorts().settings->removeValue(windowsSection, fitToScreen);
}

void savePlace()
{
    const WindowPlace place = appPorts().mainWindow->place();
    for (const PlaceSetting &setting : placeSettings)
        store(settingsSection, setting.key, fromSingle(place.*setting.value));
}

} // namespace

namespace modMain
{

void InitialiseGlobals()
{
    procedure("modMain InitialiseGlobals", [] {
        g_options = Options();
        modHelp::g_bHelpIsOutline = true;
        for (clsFont *font : {&g_fntDefaultOutlineFont, &g_fntDefaultTextFont}) {
            *font = clsFont();
            font->setSize(defaultFontSize);
        }
    });
}

void LoadSettings()
{
    procedure("modMain LoadSettings", [] {
        // Both fonts come from the one section, where the text font was stored last: a run starts with both equal.
        loadFont(g_fntDefaultOutlineFont);
        loadFont(g_fntDefaultTextFont);
        const std::optional<QString> maximum = stored(settingsSection, QLatin1StringView("MaxMRUFiles"));
        g_options.MaxMRUFiles = maximum ? Numbers::toInt16(Numbers::toNumber(*maximum)) : Options().MaxMRUFiles;
        for (const BooleanSetting &setting : booleanSettings)
            g_options.*setting.option = storedBoolean(settingsSection, setting.key, Options().*setting.option);
        if (g_options.PreserveSettings)
            loadPlace();
    });
}

void SaveSettings()
{
    procedure("modMain SaveSettings", [] {
        saveFont(g_fntDefaultOutlineFont);
        saveFont(g_fntDefaultTextFont);
        store(settingsSection, QLatin1StringView("MaxMRUFiles"), QString::number(g_options.MaxMRUFiles));
        for (const BooleanSetting &setting : booleanSettings)
            store(settingsSection, setting.key, Numbers::fromBoolean(g_options.*setting.option));
        // A minimised window has no place worth keeping.
        if (!appPorts().mainWindow->minimised())
            savePlace();
        saveStates();
        appPorts().settings->flush();
    });
}

} // namespace modMain
