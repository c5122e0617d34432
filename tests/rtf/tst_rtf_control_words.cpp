// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/ControlWords.h"
#include "rtf/RoundTrip.h"
#include "rtf/RtfSupport.h"

#include <QDir>
#include <QFile>
#include <QHash>

using rtf::Action;
using rtf::ControlWord;
using rtf::Destination;

// Every control word that the reader knows, in a text of its own: it does something, the document that comes of it is
// the one kept in tests/data/control-words.txt, and writing and reading it again changes nothing.
class TestRtfControlWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWord_data();
    void everyWord();
    void theRecordIsTheOneKept();

private:
    QByteArray m_record;
};

namespace
{

struct SilentWord {
    std::string_view name;
    const char *reason;
};

// Words that change nothing, because another one says it all.
constexpr SilentWord silentWords[] = {
    {"clmgf", "the cell that is joined says so"},
    {"clvmgf", "the cell that is joined says so"},
    {"listoverridestartat", "the number itself stands behind it"},
    {"tb", "a text document has no bars at tab stops"},
    {"trowd", "the first edge behind the end of a row begins another definition as well"},
};

bool isSilent(const ControlWord &word)
{
    return std::ranges::find(silentWords, word.name, &SilentWord::name) != std::ranges::end(silentWords);
}

// In these bodies @ stands for the control word.

const QHash<QByteArrayView, QByteArrayView> &bodiesByName()
{
    static const QHash<QByteArrayView, QByteArrayView> bodies{
        // Code pages and characters
        {"ansi", "\\mac@\\'80"},
        {"ansicpg", "@1251\\'cf"},
        {"u", "a@8364?b"},
        {"uc", "@2\\u8364 xyb"},
        {"cpg", "{\\fonttbl{\\f7@1251 Arial;}}\\f7\\'cf"},
        {"fcharset", "{\\fonttbl{\\f7@204 Arial;}}\\f7\\'cf"},
        // Characters as a whole
        {"plain", "{\\b a@ b}"},
        {"f", "a{@2 b}"},
        {"deff", "@2{\\fonttbl{\\f0 Arial;}{\\f2 Courier New;}}a"},
        {"expnd", "a{@8 b}"},
        {"dn", "a{@6 b}"},
        {"cs", "a{@2 b}"},
        {"ulnone", "{\\ul a@ b}"},
        {"nosupersub", "{\\super a@ b}"},
        {"ulc", "a{\\ul@1 b}"},
        // Paragraphs
        {"par", "a@ b"},
        {"sect", "a@ b"},
        {"page", "a@ b"},
        {"pard", "\\qc@ a"},
        {"s", "@1 a"},
        {"sbasedon", "{\\stylesheet{\\s7\\b B;}{\\s8@7\\i C;}}\\s8 a"},
        {"sectd", "\\sbknone a\\sect@ b"},
        {"sbkpage", "\\sbknone a\\sect@ b"},
        {"sbkodd", "\\sbknone a\\sect@ b"},
        {"sbkeven", "\\sbknone a\\sect@ b"},
        {"sbknone", "a\\sect@ b"},
        {"sbkcol", "a\\sect@ b"},
        {"tx", "@1000 a\\tab b"},
        {"tb", "@1000 a"},
        {"deftab", "@300 a\\tab b"},
        {"qlrulew", "\\brdrb\\brdrs@2000\\par\\pard b"},
        {"ql", "\\qc@ a"},
        {"ltrpar", "\\rtlpar@ a"},
        {"ls", "@1 a"},
        {"ilvl", "\\ls1@1 a"},
        {"sl", "@360\\slmult1 a"},
        {"slmult", "\\sl360@1 a"},
        {"itap", "\\trowd\\cellx4000\\intbl@2 b\\par\\pard\\intbl\\cell\\row"},
        {"tql", "\\tqr@\\tx1000 a"},
        // Borders
        {"box", "@\\brdrs a"},
        {"brdrcf", "\\brdrt\\brdrs@1 a"},
        {"brdrw", "\\brdrt\\brdrs@40 a"},
        {"brdrs", "\\brdrt@ a"},
        // Tables
        {"trowd", "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row@\\cellx3000\\intbl c\\cell\\row"},
        {"cell", "\\trowd\\cellx1000\\cellx2000\\intbl a@ b\\cell\\row"},
        {"cellx", "\\trowd@1000\\cellx3000\\intbl a\\cell b\\cell\\row"},
        {"row", "\\trowd\\cellx1000\\intbl a\\cell@\\trowd\\cellx1000\\intbl b\\cell\\row"},
        {"intbl", "\\trowd\\cellx1000\\pard@ a\\par\\pard b"},
        {"nestcell", "\\trowd\\cellx4000\\intbl\\itap2 a@ b\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000"
                     "\\cellx2000\\nestrow}\\itap1\\cell\\row"},
        {"nestrow", "\\trowd\\cellx4000\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000@}"
                    "\\itap2 b\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000\\nestrow}\\itap1\\cell\\row"},
        {"nesttableprops", "\\trowd\\cellx4000\\intbl\\itap2 a\\nestcell{\\*@\\trowd\\cellx1000\\nestrow}\\itap2 "
                           "b\\nestcell{\\*\\nesttableprops\\trowd\\cellx1000\\nestrow}\\itap1\\cell\\row"},
        {"clmgf", "\\trowd@\\cellx1000\\clmrg\\cellx2000\\intbl a\\cell\\cell\\row"},
        {"clmrg", "\\trowd\\clmgf\\cellx1000@\\cellx2000\\intbl a\\cell\\cell\\row"},
        {"clvmgf", "\\trowd@\\cellx1000\\intbl a\\cell\\row\\trowd\\clvmrg\\cellx1000\\intbl\\cell\\row"},
        {"clvmrg", "\\trowd\\clvmgf\\cellx1000\\intbl a\\cell\\row\\trowd@\\cellx1000\\intbl\\cell\\row"},
        {"clvertalt", "\\trowd\\clvertalb@\\cellx1000\\intbl a\\cell\\row"},
        {"clcbpat", "\\trowd@1\\cellx1000\\intbl a\\cell\\row"},
        {"clftsWidth", "\\trowd@1\\cellx1000\\intbl a\\cell\\row"},
        {"clwWidth", "\\trowd\\clftsWidth2@2500\\cellx1000\\intbl a\\cell\\row"},
        {"trftsWidth", "\\trowd\\trwWidth2500@2\\clftsWidth1\\cellx1000\\intbl a\\cell\\row"},
        {"trwWidth", "\\trowd\\trftsWidth3@3000\\clftsWidth1\\cellx1000\\intbl a\\cell\\row"},
        {"trgaph", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"clpadb", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"clpadfb", "\\trowd\\clpadb200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddb", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddfb", "\\trowd\\trpaddb200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trspdb", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trspdfb", "\\trowd\\trspdb200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trspdl", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trspdfl", "\\trowd\\trspdl200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trspdr", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trspdfr", "\\trowd\\trspdr200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trspdt", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trspdft", "\\trowd\\trspdt200@0\\cellx1000\\intbl a\\cell\\row"},
        {"clpadl", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"clpadfl", "\\trowd\\clpadl200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddl", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddfl", "\\trowd\\trpaddl200@0\\cellx1000\\intbl a\\cell\\row"},
        {"clpadr", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"clpadfr", "\\trowd\\clpadr200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddr", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddfr", "\\trowd\\trpaddr200@0\\cellx1000\\intbl a\\cell\\row"},
        {"clpadt", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"clpadft", "\\trowd\\clpadt200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddt", "\\trowd@200\\cellx1000\\intbl a\\cell\\row"},
        {"trpaddft", "\\trowd\\trpaddt200@0\\cellx1000\\intbl a\\cell\\row"},
        {"trleft", "\\trowd@300\\cellx1000\\intbl a\\cell\\row"},
        {"trhdr", "\\trowd@\\cellx1000\\intbl a\\cell\\row"},
        {"trrh", "\\trowd@400\\cellx1000\\intbl a\\cell\\row"},
        {"trkeep", "\\trowd@\\cellx1000\\intbl a\\cell\\row"},
        {"trql", "\\trowd\\trqc@\\cellx1000\\intbl a\\cell\\row"},
        // Tables of the text
        {"fonttbl", "{@{\\f7 Courier New;}}\\f7 a"},
        {"colortbl", "{@\\red9;}\\cf3 a"},
        {"stylesheet", "{@{\\s7\\b B;}}\\s7 a"},
        // Lists
        {"listtable", "{\\*@{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid9}}"
                      "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"list", "{\\*\\listtable{@{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid9}}"
                 "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"listlevel", "{\\*\\listtable{\\list{@\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid9}}"
                      "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"levelnfc", "{\\*\\listtable{\\list{\\listlevel@2{\\leveltext\\'02\\'00.;}}\\listid9}}"
                     "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"levelnfcn", "{\\*\\listtable{\\list{\\listlevel@2{\\leveltext\\'02\\'00.;}}\\listid9}}"
                      "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"levelstartat", "{\\*\\listtable{\\list{\\listlevel\\levelnfc0@5{\\leveltext\\'02\\'00.;}}\\listid9}}"
                         "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"leveltext", "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{@\\'02\\'00.;}}\\listid9}}"
                      "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"listid", "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}@9}}"
                   "{\\*\\listoverridetable{\\listoverride\\listid9\\ls9}}\\ls9 a"},
        {"listoverridetable", "{\\*@{\\listoverride\\listid5\\ls9}}\\ls9 a"},
        {"listoverride", "{\\*\\listoverridetable{@\\listid5\\ls9}}\\ls9 a"},
        {"lfolevel",
         "{\\*\\listoverridetable{\\listoverride\\listid5{@\\listoverridestartat\\levelstartat7}\\ls9}}\\ls9 a"},
        {"listoverridestartat",
         "{\\*\\listoverridetable{\\listoverride\\listid5{\\lfolevel@\\levelstartat7}\\ls9}}\\ls9 a"},
        {"pn", "{\\*@\\pnlvlbody\\pndec{\\pntxta .}}a"},
        {"pnlvlcont", "{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}a\\par{\\*\\pn@}b"},
        {"pnf", "{\\*\\pn\\pnlvlblt@2{\\pntxtb x}}a"},
        {"pnindent", "{\\*\\pn\\pnlvlblt@500{\\pntxtb x}}a"},
        {"pnstart", "{\\*\\pn\\pnlvlbody\\pndec@4{\\pntxta .}}a"},
        {"pntxta", "{\\*\\pn\\pnlvlbody\\pndec{@ )}}a"},
        {"pntxtb", "{\\*\\pn\\pnlvlbody\\pndec{@ (}}a"},
        {"pnlvlblt", "{\\*\\pn\\pndec@{\\pntxtb x}}a"},
        {"brdrdot", "\\brdrt\\brdrdb@ a"},
        {"ds", "{\\stylesheet{@0\\b T;}}\\s0 a"},
        {"ts", "{\\stylesheet{@0\\b T;}}\\s0 a"},
        {"picscalex", "a{\\pict\\wmetafile8@50 0102}b"},
        {"picscaley", "a{\\pict\\wmetafile8@50 0102}b"},
        // Pictures, fields, shapes and objects
        {"pict", "a{@\\wmetafile8 0102}b"},
        {"wbmbitspixel", "a{\\pict\\wbitmap0@4 0102}b"},
        {"wbmplanes", "a{\\pict\\wbitmap0@4 0102}b"},
        {"wbmwidthbytes", "a{\\pict\\wbitmap0@4 0102}b"},
        {"field", "a{@{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt b}}c"},
        {"fldinst", "a{\\field{\\*@ HYPERLINK \"x\"}{\\fldrslt b}}c"},
        {"fldlock", "a{\\field@{\\*\\fldinst DATE}{\\fldrslt b}}c"},
        {"fldrslt", "a{\\field{\\*\\fldinst HYPERLINK \"x\"}{@ b}}c"},
        {"formfield", "a{\\field{\\*\\fldinst FORMCHECKBOX {\\*@\\ffres1}}{\\fldrslt}}c"},
        {"ffres", "a{\\field{\\*\\fldinst FORMCHECKBOX {\\*\\formfield@1}}{\\fldrslt}}c"},
        {"ffdefres", "a{\\field{\\*\\fldinst FORMCHECKBOX {\\*\\formfield@1}}{\\fldrslt}}c"},
        {"ffl", "a{\\field{\\*\\fldinst FORMDROPDOWN {\\*\\formfield\\ffres1{\\*@ b}{\\*@ d}}}{\\fldrslt}}c"},
        {"ffdeftext", "a{\\field{\\*\\fldinst FORMTEXT {\\*\\formfield{\\*@ b}}}{\\fldrslt}}c"},
        {"object", "a{@ b{\\result c}}d"},
        {"result", "a{\\object{@ b}}c"},
        {"shppict", "a{\\*@{\\pict\\wmetafile8 0102}}b"},
        {"shp", "a{@ b{\\*\\shpinst{\\shptxt c\\par}}}d"},
        {"shpinst", "a{\\shp{\\*@ b{\\shptxt c\\par}}}d"},
        {"shpgrp", "a{\\*@ b{\\shp{\\*\\shpinst{\\shptxt c\\par}}}}d"},
        {"shptxt", "a{\\shp{\\*\\shpinst{@ c\\par}}}d"},
        {"sp", "a{@ b}d"},
        {"sv", "a{@ b}c"},
        {"do", "a{\\*@{\\dptxbxtext c\\par}}d"},
        {"dptxbxtext", "a{\\*\\do{@ c\\par}}d"},
        {"upr", "a{@ b{\\*\\ud c}}d"},
        {"ud", "a{\\upr b{\\*@ c}}d"},
    };
    return bodies;
}

QByteArray bodyOfCharNumber(rtf::CharNumber number)
{
    switch (number) {
    case rtf::CharNumber::Size:
        return "a{@30 b}c";
    case rtf::CharNumber::Language:
        return "a{@1036 b}c";
    case rtf::CharNumber::Spacing:
        return "a{@20 b}c";
    case rtf::CharNumber::Scale:
        return "a{@150 b}c";
    case rtf::CharNumber::Offset:
        return "a{@6 b}c";
    default:
        return "a{@1 b}c";
    }
}

QByteArray bodyOfBorder(const ControlWord &word)
{
    const bool isNone = word.argument == quint32(rtf::BorderStyle::None);
    return isNone ? "\\brdrt\\brdrs@ a" : "\\brdrt\\brdrdot@ a";
}

// A text in which the word means something.
QByteArray bodyOf(const ControlWord &word)
{
    const auto own = bodiesByName().constFind(QByteArrayView(word.name.data(), qsizetype(word.name.size())));
    if (own != bodiesByName().constEnd()) {
        return own->toByteArray();
    }
    switch (word.action) {
    case Action::Character:
        return "a@ b";
    case Action::CharFlag:
    case Action::CharSet:
    case Action::Underline:
    case Action::Destination:
        return "a{@ b}c";
    case Action::CharNumber:
        return bodyOfCharNumber(static_cast<rtf::CharNumber>(word.argument));
    case Action::ParaNumber:
        return word.argument == quint32(rtf::ParaNumber::OutlineLevel) ? "@2 a"
               : word.argument == quint32(rtf::ParaNumber::Shade)      ? "@1 a"
                                                                       : "@720 a";
    case Action::Alignment:
    case Action::ParaFlag:
        return "@ a";
    case Action::CodePage:
        return "@\\'80\\'e4";
    case Action::BorderKind:
        return bodyOfBorder(word);
    case Action::ParaBorder:
        return "@\\brdrs a";
    case Action::CellBorder:
        return "\\trowd@\\brdrs\\cellx1000\\intbl a\\cell\\row";
    case Action::CellAlignment:
    case Action::RowAlignment:
        return "\\trowd@\\cellx1000\\intbl a\\cell\\row";
    case Action::TabKind:
    case Action::TabLeader:
        return "@\\tx1000 a\\tab b";
    case Action::ColorPart:
        return "{\\colortbl@200;}\\cf3 a";
    case Action::LegacyKind:
        return "{\\*\\pn@{\\pntxta .}}a";
    case Action::PictureKind:
        return "a{\\pict@ 0102}b";
    case Action::PictureNumber:
        return "a{\\pict\\wmetafile8@100 0102}b";
    case Action::RowWord:
    case Action::DefinitionWord:
    case Action::Special:
        // Borders of things that have none here: what says how they look must not reach the paragraph's.
        return "\\brdrt\\brdrs@\\brdrdb a";
    default:
        return {};
    }
}

QByteArray textOf(const QByteArray &body, const QByteArray &word)
{
    QByteArray filled = body;
    filled.replace("@", word);
    return "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}{\\f2 Courier New;}}"
           "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green128\\blue255;}"
           "{\\stylesheet{\\s0 Normal;}{\\s1\\b\\qc Heading;}{\\*\\cs2\\i Slanted;}}"
           "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}"
           "{\\listlevel\\levelnfc4{\\leveltext\\'02\\'01);}}\\listid5}}"
           "{\\*\\listoverridetable{\\listoverride\\listid5\\ls1}}" +
           filled + "}";
}

QString seen(const QByteArray &rtf)
{
    const auto document = rtftest::documentOf(rtf);
    return rtf::plainText(*document) + QLatin1Char('\n') + rtftest::dump(*document) +
           QString::number(document->defaultTextOption().tabStopDistance());
}

// The dump with the format that most text here has named instead of spelt out.
QByteArray briefDump(const QByteArray &rtf)
{
    static const QString plain = [] {
        const QString dump = rtftest::dump(*rtftest::documentOf(textOf("a", {})));
        const QString run = QStringLiteral(" run \"a\"");
        return dump.sliced(dump.indexOf(run) + run.size()).trimmed();
    }();
    return rtftest::dump(*rtftest::documentOf(rtf)).replace(plain, QStringLiteral("plain")).toUtf8();
}

} // namespace

void TestRtfControlWords::everyWord_data()
{
    QTest::addColumn<int>("place");
    const auto words = rtf::allControlWords();
    for (std::size_t i = 0; i < words.size(); ++i) {
        QTest::newRow(std::string(words[i].name).c_str()) << int(i);
    }
}

void TestRtfControlWords::everyWord()
{
    QFETCH(const int, place);
    const ControlWord &word = rtf::allControlWords()[std::size_t(place)];
    const QByteArray name(word.name.data(), qsizetype(word.name.size()));
    const QByteArray body = bodyOf(word);
    QVERIFY2(body.contains('@'), "no text has this word");
    const QByteArray rtf = textOf(body, '\\' + name);
    const bool doesSomething = seen(rtf) != seen(textOf(body, "\\unheardof"));
    QVERIFY2(doesSomething != isSilent(word), qPrintable(seen(rtf)));
    QCOMPARE(rtftest::roundTripFault(rtf), QString());

    QByteArray shown = body;
    shown.replace("@", '\\' + name);
    m_record += "== " + name + '\n' + shown + '\n' + briefDump(rtf);
}

void TestRtfControlWords::theRecordIsTheOneKept()
{
    QFile written(QCoreApplication::applicationDirPath() + QStringLiteral("/control-words.txt"));
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write(m_record);
    written.close();
    QFile kept(QStringLiteral(QUILLERY_TEST_DATA "/control-words.txt"));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    const QList<QByteArray> expected = kept.readAll().split('\n');
    const QList<QByteArray> lines = m_record.split('\n');
    for (qsizetype i = 0; i < std::max(expected.size(), lines.size()); ++i) {
        QVERIFY2(lines.value(i) == expected.value(i),
                 qPrintable(QStringLiteral("line %1\n").arg(i + 1) + QString::fromUtf8(lines.value(i)) +
                            QStringLiteral("\nagainst\n") + QString::fromUtf8(expected.value(i))));
    }
}

QTEST_MAIN(TestRtfControlWords)
#include "tst_rtf_control_words.moc"
