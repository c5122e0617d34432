// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/LayoutStrain.h"

#include "model/Limits.h"
#include "model/TextBounds.h"

#include <QFontInfo>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>
#include <vector>

namespace
{

constexpr qreal pixelsPerPoint = 96.0 / 72;
constexpr qreal narrowPane = 400;
constexpr qreal widthOfSize = 0.6;  // of a letter
constexpr qreal heightOfSize = 1.4; // of a line

// Microseconds, as they were measured with texts of one kind.
constexpr qreal effortOfFont = 1000; // it is looked for among those installed
constexpr qreal effortOfEmoji = 100; // a picture to be unpacked
constexpr qreal effortOfHeapedMark = 100;
constexpr qreal effortInWord = 0.00015; // of each character with each other: every line looks through the rest
constexpr qreal effortOfRunInWord = 0.003;
constexpr qreal effortOfTabAndRun = 0.11; // each tabulator adds up all that stands behind it
constexpr qreal effortOfTabAndCharacter = 0.002;
constexpr qreal effortOfFloats = 1; // each looks for a place among the others

// Shorter words take next to nothing.
constexpr qsizetype ordinaryWord = 500;

// In many narrow lines each looks through the rest of the word, and a cell lays its words out twice for each table
// around it. Below this the letters are each on a line of their own.
constexpr qreal widthOfFewLines = 100;
constexpr qreal mostTimesOfLines = 12;
constexpr qsizetype ordinaryWordInCell = 100;

// Marks that may follow each other before they are a heap. All of one are drawn in one place.
constexpr int ordinaryMarks = 8;

bool isEmoji(char32_t character)
{
    return character >= 0x1F000 && character <= 0x1FAFF;
}

// Marks, joiners, and what turns the direction: they have no width.
bool isWidthless(char32_t character)
{
    constexpr char32_t first = 0xAD;
    if (character < first)
        return false;
    const QChar::Category category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format;
}

// Calls a function with each character of a text.
template <typename Take>
void forEachCharacter(QStringView text, Take take)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size();
        take(isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : char32_t(text[i].unicode()));
        i += isPair ? 1 : 0;
    }
}

qsizetype emojiIn(QStringView text)
{
    qsizetype emoji = 0;
    forEachCharacter(text, [&emoji](char32_t character) { emoji += isEmoji(character) ? 1 : 0; });
    return emoji;
}

// Of marks that stand in one place.
qreal effortOfHeaps(QStringView text)
{
    qsizetype heaped = 0;
    int widthless = 0;
    forEachCharacter(text, [&](char32_t character) {
        widthless = isWidthless(character) ? widthless + 1 : 0;
        heaped += widthless > ordinaryMarks ? 1 : 0;
    });
    return qreal(heaped) * effortOfHeapedMark;
}

// How often the script changes, or the direction: the text engine makes runs of its own there.
qsizetype scriptRuns(QStringView text)
{
    qsizetype runs = 0;
    QChar::Script last = QChar::Script_Common;
    for (const QChar character : text) {
        const QChar::Script script = character.script();
        const bool isNeutral = script == QChar::Script_Common || script == QChar::Script_Inherited;
        const bool turns = character.category() == QChar::Other_Format;
        runs += turns || (!isNeutral && script != last) ? 1 : 0;
        last = isNeutral ? last : script;
    }
    return runs;
}

class StrainMeter
{
public:
    explicit StrainMeter(const QTextDocument &document);

    LayoutStrain measure();

private:
    struct Line {
        qreal width;
        qreal height;
    };

    // The formats of the document's fragments are few; what is asked of each is learnt once.
    struct CharLook {
        bool isKnown = false;
        bool isPicture = false;
        qreal size = 0;
        qreal pictureHeight = 0;
    };

    void addBlock(const QTextBlock &block);
    void addFrame(const QTextFrame *frame);
    qreal effortOfWords(const QString &text, qsizetype longerThan) const;
    qreal effortOfTabs(const QTextBlock &block, const QString &text) const;
    static qreal widthOf(const QTextBlock &block, const QTextFrame *frame);
    static qreal timesOfWords(qreal width, const QTextFrame *frame);
    const CharLook &lookOf(int formatIndex);
    qreal sizeOf(const QTextCharFormat &format) const;

    const QTextDocument &m_document;
    const QList<QTextFormat> m_formats;
    std::vector<CharLook> m_looks;
    QSet<QFont> m_fonts;
    qreal m_baseSize;
    qsizetype m_floats = 0;
    LayoutStrain m_strain;
    // Where the runs of the block begin.
    std::vector<qsizetype> m_runs;
};

StrainMeter::StrainMeter(const QTextDocument &document)
    : m_document(document)
    , m_formats(document.allFormats())
    , m_looks(std::size_t(m_formats.size()))
{
    const QFont base = document.defaultFont();
    m_baseSize = base.pixelSize() > 0 ? base.pixelSize() : base.pointSizeF() * pixelsPerPoint;
}

LayoutStrain StrainMeter::measure()
{
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next())
        addBlock(block);
    addFrame(m_document.rootFrame());
    m_strain.effort += qreal(m_fonts.size()) * effortOfFont + qreal(m_floats) * qreal(m_floats) * effortOfFloats;
    return m_strain;
}

qreal StrainMeter::sizeOf(const QTextCharFormat &format) const
{
    if (format.hasProperty(QTextFormat::FontPixelSize))
        return format.intProperty(QTextFormat::FontPixelSize);
    const qreal points = format.fontPointSize();
    return points > 0 ? points * pixelsPerPoint : m_baseSize;
}

const StrainMeter::CharLook &StrainMeter::lookOf(int formatIndex)
{
    CharLook &look = m_looks[std::size_t(formatIndex)];
    if (!look.isKnown) {
        const QTextCharFormat format = m_formats[formatIndex].toCharFormat();
        look = {true, format.isImageFormat(), sizeOf(format), 0};
        if (look.isPicture)
            look.pictureHeight = std::max<qreal>(0, format.toImageFormat().height());
        else
            m_fonts.insert(format.font());
    }
    return look;
}

void StrainMeter::addBlock(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    const auto lineHeight = [&format](qreal size) { return format.lineHeight(size * heightOfSize, 1); };
    const QTextFrame *frame = m_document.frameAt(block.position());
    const qreal width = widthOf(block, frame);
    qreal height = lineHeight(sizeOf(block.charFormat()));
    m_runs.clear();
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const CharLook &look = lookOf(fragment.charFormatIndex());
        m_runs.push_back(fragment.position() - block.position());
        if (look.isPicture) {
            height += fragment.length() * look.pictureHeight;
            continue;
        }
        const qreal lines = std::min<qreal>(fragment.length(), fragment.length() * look.size * widthOfSize / width);
        height += lineHeight(look.size) * (lines + double(fragment.text().count(QChar::LineSeparator)));
    }
    m_strain.height += height + std::max<qreal>(0, format.topMargin()) + std::max<qreal>(0, format.bottomMargin());
    if (block.length() > 1) {
        const QString text = block.text();
        const qsizetype longerThan = frame == m_document.rootFrame() ? ordinaryWord : ordinaryWordInCell;
        const qreal emoji = qreal(emojiIn(text)) * effortOfEmoji;
        m_strain.key = std::max(m_strain.key, emoji);
        m_strain.effort += emoji + effortOfHeaps(text) + effortOfTabs(block, text) +
                           effortOfWords(text, longerThan) * timesOfWords(width, frame);
    }
}

// What a paragraph has for its lines where the pane is narrow.
qreal StrainMeter::widthOf(const QTextBlock &block, const QTextFrame *frame)
{
    const QTextBlockFormat format = block.blockFormat();
    qreal width = narrowPane;
    if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
        const QList<QTextLength> columns = table->format().columnWidthConstraints();
        const int column = columns.isEmpty() ? 0 : table->cellAt(block.position()).column();
        if (column < columns.size() && columns[column].type() == QTextLength::FixedLength)
            width = std::min(width, columns[column].rawValue());
    }
    return std::max<qreal>(1,
                           width - std::max<qreal>(0, format.leftMargin()) - std::max<qreal>(0, format.rightMargin()));
}

// How much more a word takes in lines of a width than where it has a few.
qreal StrainMeter::timesOfWords(qreal width, const QTextFrame *frame)
{
    qreal columns = 1;
    qreal times = 0.5;
    for (; frame; frame = frame->parentFrame()) {
        const auto *table = qobject_cast<const QTextTable *>(frame);
        columns *= table ? table->columns() : 1;
        times *= table ? 2 : 1;
    }
    const qreal ofLines = widthOfFewLines / std::max<qreal>(1, std::min(width, narrowPane / columns));
    return std::max<qreal>(1, times) * (1 + std::min(ofLines, mostTimesOfLines));
}

qreal StrainMeter::effortOfWords(const QString &text, qsizetype longerThan) const
{
    qreal effort = 0;
    for (const auto &[from, to] : unbrokenStretches(text, longerThan)) {
        const auto length = qreal(to - from);
        const auto runs =
            std::lower_bound(m_runs.begin(), m_runs.end(), to) - std::lower_bound(m_runs.begin(), m_runs.end(), from);
        const qsizetype ownRuns = scriptRuns(QStringView(text).sliced(from, to - from));
        effort += length * (length * effortInWord + qreal(runs + ownRuns) * effortOfRunInWord);
    }
    return effort;
}

qreal StrainMeter::effortOfTabs(const QTextBlock &block, const QString &text) const
{
    const auto tabs = qreal(text.count(u'\t'));
    if (tabs == 0 || !block.blockFormat().hasProperty(QTextFormat::TabPositions))
        return 0;
    const qreal runs = 2 * tabs + qreal(m_runs.size());
    return tabs * (runs * effortOfTabAndRun + qreal(text.size()) * effortOfTabAndCharacter) / 2;
}

void StrainMeter::addFrame(const QTextFrame *frame)
{
    const QTextFrameFormat format = frame->frameFormat();
    m_floats += format.position() == QTextFrameFormat::InFlow ? 0 : 1;
    const auto positive = [](qreal length) { return std::max<qreal>(0, length); };
    if (frame != m_document.rootFrame())
        m_strain.height += positive(format.topMargin()) + positive(format.bottomMargin()) +
                           2 * (positive(format.padding()) + positive(format.border()));
    if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
        const QTextTableFormat own = table->format();
        const qreal ofRow = 2 * positive(own.cellPadding()) + positive(own.cellSpacing());
        m_strain.height += ofRow * table->rows();
    }
    for (const QTextFrame *child : frame->childFrames())
        addFrame(child);
}

} // namespace

LayoutStrain &LayoutStrain::operator+=(const LayoutStrain &other)
{
    height += other.height;
    effort += other.effort;
    // The heaviest paragraphs of both may become one.
    key += other.key;
    return *this;
}

bool LayoutStrain::isBearable(qreal times) const
{
    return height <= times * limits::tallestText && effort <= times * limits::mostEffort &&
           key <= times * limits::mostKeyEffort;
}

LayoutStrain layoutStrain(const QTextDocument &document)
{
    return StrainMeter(document).measure();
}

bool hasEmoji(QStringView text)
{
    return emojiIn(text) > 0;
}
