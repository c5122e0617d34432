// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/CodePages.h"

#include "util/AnsiCodec.h"

#include <QStringDecoder>

#include <algorithm>
#include <unordered_map>

namespace rtf
{

namespace
{

struct Pair {
    int from;
    int to;
};

constexpr Pair charsetPages[] = {
    {0, 1252},   {2, 0},      {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002}, {83, 10005},
    {84, 10004}, {85, 10006}, {86, 10081}, {87, 10021}, {88, 10029}, {89, 10007}, {128, 932},  {129, 949},
    {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
    {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};

struct PageName {
    int number;
    const char *name;
};

// Pages whose name is not "windows-" and the number. The Macintosh's Japanese, Chinese and Korean differ from those of
// Windows only in characters that no text uses.
constexpr PageName pageNames[] = {
    {437, "IBM437"},          {708, "ISO-8859-6"},    {709, "ISO-8859-6"},
    {720, "ibm-720"},         {737, "ibm-737"},       {775, "ibm-775"},
    {819, "ISO-8859-1"},      {850, "IBM850"},        {852, "IBM852"},
    {855, "IBM855"},          {857, "IBM857"},        {860, "IBM860"},
    {861, "IBM861"},          {862, "IBM862"},        {863, "IBM863"},
    {864, "IBM864"},          {865, "IBM865"},        {866, "IBM866"},
    {1361, "ibm-1363"},       {10000, "macintosh"},   {10001, "windows-932"},
    {10002, "windows-950"},   {10003, "windows-949"}, {10004, "windows-1256"},
    {10005, "windows-1255"},  {10006, "x-mac-greek"}, {10007, "x-mac-cyrillic"},
    {10008, "windows-936"},   {10021, "windows-874"}, {10029, "x-mac-centraleurroman"},
    {10081, "x-mac-turkish"}, {20866, "KOI8-R"},      {21866, "KOI8-U"},
    {28591, "ISO-8859-1"},    {28592, "ISO-8859-2"},  {28595, "ISO-8859-5"},
    {28597, "ISO-8859-7"},    {28605, "ISO-8859-15"}, {54936, "gb18030"},
    {65001, "UTF-8"},
};

QByteArray nameOf(int number)
{
    const auto *row = std::ranges::find(pageNames, number, &PageName::number);
    return row == std::ranges::end(pageNames) ? "windows-" + QByteArray::number(number) : QByteArray(row->name);
}

QStringDecoder decoderOf(int number)
{
    return QStringDecoder(nameOf(number).constData());
}

bool isKnownPage(int number)
{
    constexpr int windowsPages[] = {874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};
    return std::ranges::find(windowsPages, number) != std::ranges::end(windowsPages) ||
           std::ranges::find(pageNames, number, &PageName::number) != std::ranges::end(pageNames);
}

struct LeadBytes {
    int page;
    quint8 first;
    quint8 last;
};

constexpr LeadBytes leadBytes[] = {
    {932, 0x81, 0x9F},   {932, 0xE0, 0xFC},   {936, 0x81, 0xFE},   {949, 0x81, 0xFE},
    {950, 0x81, 0xFE},   {1361, 0x81, 0xFE},  {10001, 0x81, 0x9F}, {10001, 0xE0, 0xFC},
    {10002, 0x81, 0xFC}, {10003, 0xA1, 0xFC}, {10008, 0xA1, 0xFC}, {54936, 0x81, 0xFE},
};

constexpr int utf8 = 65001;

// The Symbol font's encoding from 20 to FF, as unicode.org publishes it; 0 where it has no glyph.
constexpr char16_t symbols[] = {
    0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220B, 0x0028, 0x0029, 0x2217, 0x002B, 0x002C, 0x2212,
    0x002E, 0x002F, 0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037, 0x0038, 0x0039, 0x003A, 0x003B,
    0x003C, 0x003D, 0x003E, 0x003F, 0x2245, 0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399,
    0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F, 0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9,
    0x039E, 0x03A8, 0x0396, 0x005B, 0x2234, 0x005D, 0x22A5, 0x005F, 0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5,
    0x03C6, 0x03B3, 0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1, 0x03C3,
    0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C, 0,      0,      0,
    0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,
    0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,      0,
    0,      0,      0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194,
    0x2190, 0x2191, 0x2192, 0x2193, 0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, 0x00F7, 0x2260,
    0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, 0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205, 0x2229,
    0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209, 0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F,
    0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3, 0x25CA, 0x2329, 0x00AE, 0x00A9,
    0x2122, 0x2211, 0x239B, 0x239C, 0x239D, 0x23A1, 0x23A2, 0x23A3, 0x23A7, 0x23A8, 0x23A9, 0x23AA, 0,      0x232A,
    0x222B, 0x2320, 0x23AE, 0x2321, 0x239E, 0x239F, 0x23A0, 0x23A4, 0x23A5, 0x23A6, 0x23AB, 0x23AC, 0x23AD, 0,
};
static_assert(std::size(symbols) == 224);

} // namespace

int codePageOfCharset(int charset)
{
    const auto *row = std::ranges::find(charsetPages, charset, &Pair::from);
    return row == std::ranges::end(charsetPages) ? 0 : row->to;
}

int latinByte(char16_t character)
{
    // Readers do not agree on the bytes that the code page leaves undefined.
    const bool isControl = character >= 0x80 && character < 0xA0;
    const std::optional<char> byte = isControl ? std::nullopt : AnsiCodec::byteOf(character);
    return byte ? static_cast<uchar>(*byte) : -1;
}

char16_t symbolCharacter(quint8 byte)
{
    const char16_t known = byte < 0x20 ? char16_t(0) : symbols[byte - 0x20];
    return known != 0 ? known : static_cast<char16_t>(0xF000 + byte);
}

CodePage::CodePage(int number)
    : m_number(number)
    , m_multiByte(number == utf8 ||
                  std::ranges::find(leadBytes, number, &LeadBytes::page) != std::ranges::end(leadBytes))
{
    if (m_multiByte) {
        return;
    }
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const QString text = decoderOf(number).decode(QByteArrayView(&c, 1));
        m_characters[std::size_t(byte)] =
            text.isEmpty() ? char16_t(QChar::ReplacementCharacter) : text.front().unicode();
    }
}

bool CodePage::isLead(quint8 byte) const
{
    return std::ranges::any_of(leadBytes, [this, byte](const LeadBytes &range) {
        return range.page == m_number && byte >= range.first && byte <= range.last;
    });
}

QString CodePage::decode(QByteArrayView bytes) const
{
    QString text = decoderOf(m_number).decode(bytes);
    // The Japanese page gives U+001A for what it does not know.
    return text.replace(QChar(0x1A), QChar(QChar::ReplacementCharacter));
}

const CodePage &codePage(int number)
{
    thread_local std::unordered_map<int, CodePage> pages;
    const int known = isKnownPage(number) ? number : windowsLatin;
    return pages.try_emplace(known, known).first->second;
}

} // namespace rtf
