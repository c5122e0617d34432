// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "commands/CommandKeys.h"
#include "commands/CommandTable.h"
#include "commands/ToolbarTable.h"
#include "document/Document.h"
#include "document/modDoc.h"
#include "formats/PlainText.h"

#include "OutlineSource.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QString manualFile = QStringLiteral(QUILLERY_MANUAL);

// What a caption says, and the key that it shows behind a run of blanks.
struct Caption {
    QString words;
    QString key;
};

Caption captionOf(const CommandRow &row)
{
    QString text = toText(row.caption);
    text.remove(u'&');
    const qsizetype blanks = text.indexOf(u"  "_s);
    Caption caption = {text.left(blanks), blanks < 0 ? QString() : text.sliced(blanks).trimmed()};
    if (caption.words.endsWith(u"..."_s))
        caption.words.chop(3);
    return caption;
}

const CommandRow &menuOf(const CommandRow &row)
{
    const CommandRow *menu = &row;
    while (!menu->parent.empty())
        menu = &commandTable[commandRow(menu->parent)];
    return *menu;
}

// The captions from the menu bar down to an item, as the manual writes them: "View ▸ Options ▸ Back up on saving".
QString pathOf(const CommandRow &row)
{
    const QString words = captionOf(row).words;
    return row.parent.empty() ? words : pathOf(commandTable[commandRow(row.parent)]) + u" ▸ "_s + words;
}

// A key of the key map by the name that the manual gives it.
QString nameOf(const KeyBinding &binding)
{
    const QString key = binding.key == Qt::Key_Delete ? u"Delete"_s : QKeySequence(binding.key).toString();
    switch (binding.modifiers) {
    case CommandKey::Any:
    case CommandKey::None:
        return key;
    case CommandKey::Keypad:
        return u"Num "_s + key;
    case CommandKey::Alt:
        return u"Alt+"_s + key;
    case CommandKey::Ctrl:
        return u"Ctrl+"_s + key;
    case CommandKey::CtrlShift:
        // Where Shift gives other characters than on most keyboards, the comma and the full stop stand in for these
        // two.
        return u"Ctrl+Shift+"_s + QString(key).replace(u',', u'<').replace(u'.', u'>');
    case CommandKey::CtrlAlt:
        return u"Ctrl+Alt+"_s + key;
    }
    return QString();
}

OutlineSource manualSource()
{
    QFile file(QStringLiteral(QUILLERY_SOURCE_DIR "/resources/help.outline"));
    return file.open(QIODevice::ReadOnly) ? parseOutlineSource(QString::fromUtf8(file.readAll())) : OutlineSource();
}

} // namespace

// Whether the manual that the build makes is whole, and speaks of everything that there is to be used.
class tst_Help : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void loadsWithoutDamage();
    void liesBesideTheProgramReadOnly();
    void nothingIsEmpty();
    void saysWhatItsSourceSays();
    void everyMenuIsListedInItsOrder_data();
    void everyMenuIsListedInItsOrder();
    void everyShownKeyStandsBesideItsItem();
    void everyKeyIsListed();
    void everyButtonIsListed();
    void everyMenuPathExists();
    void everyReferenceLeadsToAnEntry();

private:
    QString textOf(const QString &label) const;

    QStringList linesOf(const QString &label) const { return textOf(label).split(u'\n'); }

    QSet<QString> listedKeys() const;

    struct Part {
        QString label;
        QString text;
    };

    QList<Part> m_parts;
};

// Loads the manual as the program does, and keeps its entries in outline order.
void tst_Help::initTestCase()
{
    MainFixture fixture;
    QVERIFY(modDoc::DocLoad(manualFile));
    const Document *document = fixture.main.windows().activeDocument();
    QVERIFY(document);
    const EntryTree &tree = document->tree;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        QString text = plainTextOf(tree.storedText(entry));
        text.replace(u"\r\n"_s, u"\n"_s);
        m_parts.append({entry->label(), text});
    }
}

QString tst_Help::textOf(const QString &label) const
{
    for (const Part &part : m_parts) {
        if (part.label == label)
            return part.text;
    }
    QTest::qFail(qPrintable(u"no entry is called "_s + label), __FILE__, __LINE__);
    return QString();
}

void tst_Help::loadsWithoutDamage()
{
    MainFixture fixture;
    QVERIFY(modDoc::DocLoad(manualFile));
    const Document *document = fixture.main.windows().activeDocument();
    QVERIFY(document);
    QCOMPARE(document->m_sFile, manualFile);
    QVERIFY(document->noted().isEmpty());
    QVERIFY2(fixture.app.logLines().isEmpty(), qPrintable(fixture.app.logLines().join(u'\n')));
    QVERIFY(document->tree.entryCount() >= 40);
    QCOMPARE(document->tree.selected(), document->tree.root());
}

void tst_Help::liesBesideTheProgramReadOnly()
{
    constexpr QFileDevice::Permissions anyWrite =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    const QFileInfo file(manualFile);
    QCOMPARE(file.fileName(), u"Help.qly"_s);
    QVERIFY(file.permission(QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
    QVERIFY(!(file.permissions() & anyWrite));

    MainFixture fixture;
    QVERIFY(modDoc::DocLoad(manualFile));
    QVERIFY(fixture.main.windows().activeDocument()->bReadOnly());
    QVERIFY(!fixture.enabled("mnuFileSave"));
    QVERIFY(fixture.enabled("mnuFileClose"));
}

void tst_Help::nothingIsEmpty()
{
    for (const Part &part : m_parts) {
        QVERIFY2(!part.label.trimmed().isEmpty(), qPrintable(part.text.left(40)));
        QVERIFY2(!part.text.trimmed().isEmpty(), qPrintable(part.label));
    }
}

void tst_Help::saysWhatItsSourceSays()
{
    const OutlineSource source = manualSource();
    QCOMPARE(m_parts.size(), qsizetype(source.entries.size()));
    for (qsizetype place = 0; place < m_parts.size(); ++place) {
        const SourceEntry &entry = source.entries.at(static_cast<std::size_t>(place));
        QStringList lines;
        for (const SourceParagraph &paragraph : entry.paragraphs) {
            QString line;
            for (const SourceRun &run : paragraph.runs)
                line += run.text;
            lines += line;
        }
        QCOMPARE(m_parts.at(place).label, entry.label);
        QCOMPARE(m_parts.at(place).text, lines.join(u'\n'));
    }
}

void tst_Help::everyMenuIsListedInItsOrder_data()
{
    QTest::addColumn<QString>("menu");
    for (const CommandRow &row : commandTable) {
        if (row.parent.empty())
            QTest::newRow(qPrintable(toText(row.name))) << captionOf(row).words;
    }
}

void tst_Help::everyMenuIsListedInItsOrder()
{
    QFETCH(QString, menu);
    QStringList items;
    for (const CommandRow &row : commandTable) {
        const bool isItem = row.kind == RowKind::Command || (row.kind == RowKind::Menu && !row.parent.empty());
        if (isItem && captionOf(menuOf(row)).words == menu)
            items += captionOf(row).words;
    }
    QStringList listed;
    for (const QString &line : linesOf(u"The %1 menu"_s.arg(menu))) {
        // The recent documents are items without captions of their own.
        static const QRegularExpression end(u" \\(| – "_s);
        if (!line.startsWith(u"the recent documents"_s))
            listed += line.left(line.indexOf(end));
    }
    for (const QString &item : items)
        QVERIFY2(listed.contains(item), qPrintable(u"the manual's list of the menu leaves out "_s + item));
    QCOMPARE(listed, items);
}

void tst_Help::everyShownKeyStandsBesideItsItem()
{
    int keys = 0;
    for (const CommandRow &row : commandTable) {
        const Caption caption = captionOf(row);
        if (caption.key.isEmpty())
            continue;
        ++keys;
        const QString begin = caption.words + u" ("_s + caption.key;
        const QStringList lines = linesOf(u"The %1 menu"_s.arg(captionOf(menuOf(row)).words));
        const bool stands = std::any_of(lines.begin(), lines.end(), [&begin](const QString &line) {
            return line.startsWith(begin + u')') || line.startsWith(begin + u',');
        });
        QVERIFY2(stands, qPrintable(begin));
    }
    for (const KeyBinding &binding : keysOf(CommandKey::Road::Desktop)) {
        const CommandRow &row = commandTable[commandRow(binding.command)];
        const QString key = nameOf(binding);
        const QString begin = captionOf(row).words + u" ("_s;
        const QStringList lines = linesOf(u"The %1 menu"_s.arg(captionOf(menuOf(row)).words));
        const bool stands = std::any_of(lines.begin(), lines.end(), [&](const QString &line) {
            const QString inParentheses = line.section(u'(', 1).section(u')', 0, 0);
            return line.startsWith(begin) && inParentheses.split(u", "_s).contains(key);
        });
        QVERIFY2(stands, qPrintable(begin + key));
    }
    QVERIFY(keys > 20);
}

// What stands in front of the tabs of the entries that list keys.
QSet<QString> tst_Help::listedKeys() const
{
    QSet<QString> keys;
    for (const Part &part : m_parts) {
        if (!part.label.startsWith(u"Keys in "_s))
            continue;
        for (const QString &line : part.text.split(u'\n')) {
            if (const qsizetype tab = line.indexOf(u'\t'); tab > 0) {
                for (const QString &key : line.left(tab).split(u", "_s))
                    keys.insert(key);
            }
        }
    }
    return keys;
}

void tst_Help::everyKeyIsListed()
{
    const QSet<QString> keys = listedKeys();
    for (const auto road : {CommandKey::Road::Panes, CommandKey::Road::Desktop, CommandKey::Road::Window}) {
        for (const KeyBinding &binding : keysOf(road))
            QVERIFY2(keys.contains(nameOf(binding)), qPrintable(nameOf(binding)));
    }
    for (const CommandRow &row : commandTable) {
        QString key = captionOf(row).key;
        key.replace(u"Plus"_s, u"Num +"_s).replace(u"Minus"_s, u"Num -"_s);
        QVERIFY2(key.isEmpty() || keys.contains(key), qPrintable(key));
    }
    // Those that the panes and windows handle by themselves.
    for (const char *key : {"Tab", "Menu", "Insert", "Ctrl+Z", "Ctrl+Y", "Num *", "Enter", "Esc"})
        QVERIFY2(keys.contains(QLatin1StringView(key)), key);
}

void tst_Help::everyButtonIsListed()
{
    const QString buttons = textOf(u"Toolbar buttons"_s);
    for (const ToolbarRow &row : toolbarTable) {
        const QRegularExpression key(u"\\b%1\\b"_s.arg(QRegularExpression::escape(toText(row.key))));
        QVERIFY2(key.match(buttons).hasMatch(), qPrintable(toText(row.key)));
    }
}

void tst_Help::everyMenuPathExists()
{
    QSet<QString> paths;
    for (const CommandRow &row : commandTable)
        paths.insert(pathOf(row));
    int named = 0;
    const OutlineSource source = manualSource();
    for (const SourceEntry &entry : source.entries) {
        for (const SourceParagraph &paragraph : entry.paragraphs) {
            for (const SourceRun &run : paragraph.runs) {
                if (run.text.contains(u'▸')) {
                    ++named;
                    QVERIFY2(paths.contains(run.text), qPrintable(entry.label + u": "_s + run.text));
                }
            }
        }
    }
    QVERIFY(named > 20);
}

void tst_Help::everyReferenceLeadsToAnEntry()
{
    QSet<QString> labels;
    for (const Part &part : m_parts)
        labels.insert(part.label);
    static const QRegularExpression reference(u"(?:[Ss]ee|read|under|listed in) “([^”]+)”"_s);
    int references = 0;
    for (const Part &part : m_parts) {
        QRegularExpressionMatchIterator found = reference.globalMatch(part.text);
        while (found.hasNext()) {
            ++references;
            const QString label = found.next().captured(1);
            QVERIFY2(labels.contains(label), qPrintable(part.label + u": "_s + label));
        }
    }
    QVERIFY(references >= 5);
}

QTEST_MAIN(tst_Help)
#include "tst_Help.moc"
