// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "document/UndoRedo.h"
#include "document/modNodes.h"
#include "model/StoredText.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "search/modSearch.h"
#include "support/NativeBytes.h"
#include "support/OutlineText.h"
#include "text/modFont.h"
#include "window/frmDocument.h"

#include <QBuffer>
#include <QImage>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

// Long random work in several documents of the running program, by commands, keys, drags and dialogs: whatever was
// done is undone and redone to the byte, from any position to any other.
//
// QUILLERY_UNDO_STEPS says how many steps all runs take together, where it is to be more than a quick look.

namespace undoRandom
{

QByteArray withoutRecords(const QByteArray &bytes, std::initializer_list<const char *> names)
{
    QByteArray rest;
    for (const QByteArray &line : bytes.split('\n')) {
        const auto isNamed = [&line](const char *name) { return line.startsWith(QByteArray("{\\qlf_") + name + ' '); };
        if (std::ranges::none_of(names, isNamed))
            rest += line + '\n';
    }
    return rest;
}

// A document at one position of its history. What is selected is part of no step.
struct State {
    // Without what is open and what is selected.
    QByteArray content;
    // With what is open.
    QByteArray saved;
    EntryId selected = EntryId::None;
    // What a difference is told by: labels and texts.
    QStringList entries;
};

State stateOf(const Document &document)
{
    State state;
    if (const Entry *selected = document.tree.selected())
        state.selected = selected->id();
    const QByteArray bytes = nativeBytes(document.outline());
    state.saved = withoutRecords(bytes, {"selecteditemkey"});
    state.content = withoutRecords(bytes, {"selecteditemkey", "nodevisible"});
    const Entry *root = document.tree.root();
    for (const Entry *entry = root; entry; entry = nextInOutline(entry, root)) {
        const QByteArray text = NodeTextDecompressIfRequired(document.tree.storedText(entry));
        state.entries.append(entry->label() + u": "_s + QString::fromLatin1(text));
    }
    return state;
}

QString firstDifference(const State &now, const State &before)
{
    for (qsizetype i = 0; i < std::max(now.entries.size(), before.entries.size()); ++i) {
        if (now.entries.value(i) != before.entries.value(i))
            return u"entry %1 is %2, was %3"_s.arg(QString::number(i), now.entries.value(i), before.entries.value(i));
    }
    return u"the header"_s;
}

// What is known of one document's history.
struct Log {
    struct Position {
        std::optional<State> state;
    };

    Document *document = nullptr;
    std::vector<Position> positions;
    State first;
    int position = 0;
    // What the file holds, and the position that it was saved at while a step leads there.
    std::optional<State> saved;
    std::optional<int> savedAt;
    QString file;
};

// How much the documents keep of what was done.
enum class Memory {
    Ample,
    // Texts are let go as soon as another is shown, so that their steps become fewer.
    ForOneText,
    // The oldest steps go.
    ForFewSteps
};

QByteArray smallPicture()
{
    QImage image(5, 3, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

class Player
{
public:
    Player(quint32 seed, Memory memory);

    QString play();
    // What is wrong after that; empty when nothing is.
    QString fault();
    // Everything undone, everything redone, and undone again.
    QString walkToTheEnds();

private:
    struct Deed {
        const char *name;
        int weight;
        std::function<void(Player &)> run;
    };

    enum class Kind { Work, Travel };

    static const std::vector<Deed> &deeds();

    int draw(int below) { return static_cast<int>(m_random.bounded(below)); }

    bool oneIn(int times) { return draw(times) == 0; }

    template <typename Items>
    const auto &oneOf(const Items &items)
    {
        return items[static_cast<size_t>(draw(static_cast<int>(std::size(items))))];
    }

    Log &log() { return m_logs[static_cast<size_t>(m_active)]; }

    Document &document() { return *log().document; }

    frmDocument &form() { return static_cast<frmDocument &>(document().view()->window); }

    RichTextBox &box() { return *form().textBox; }

    Entry *drawEntry(Document &document);
    QString drawWord();

    void choose(const char *name);
    void inText(const char *name);
    void command(const char *name);
    void insert(const char *name);
    void label();
    void remove(const char *name);
    void type();
    void moveCaret();
    void selectText();
    void paste(const char *name);
    void font(const char *name);
    void clearText();
    void select();
    void openOrClose();
    void drag();
    void replaceAll();
    void replaceOne();
    static void noteSaved(Log &saved);
    void save();
    void saveAs();
    void anotherDocument();
    bool isRightSoFar();
    void endLabelEdits();
    void travel(const std::function<void()> &go);
    void undoOrRedo();
    void goToAnyStep();

    QString faultIn(Log &log, bool looksAtState);
    QString faultOnTravel(Log &log, const State &now);
    QString faultAtWork(Log &log, const std::optional<State> &now);
    QString faultOfWalk(Log &log);
    QString walk(Log &log, bool forth);
    QString faultOfSaved(const Log &log, const State &now) const;
    QString faultOfPane(const Document &document) const;

    MainFixture m_main;
    QRandomGenerator m_random;
    Memory m_memory;
    std::vector<Log> m_logs;
    int m_active = 0;
    int m_files = 0;
    Kind m_kind = Kind::Work;
    std::map<std::string, QAction *> m_actions;
    QByteArray m_picture = smallPicture();
    QString m_failure;
};

// Nothing is left of what another one did, so that a seed plays the same whatever was played before.
Player::Player(quint32 seed, Memory memory)
    : m_random(seed)
    , m_memory(memory)
{
    g_sSearchFind.clear();
    g_sSearchReplace.clear();
    g_sSearchWhere.clear();
    g_sSearchScope.clear();
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
    modOutline::copiedEntry().clear();
    m_main.start();
    m_main.main.resize(1000, 700);
    m_main.main.activateWindow();
    if (!QTest::qWaitForWindowActive(&m_main.main))
        m_failure = u"the window does not become active"_s;
    for (int i = 0; i < 3; ++i) {
        m_main.choose("mnuFileNew");
        Document &made = *DocumentActive();
        made.view()->trvOutline.EndLabelEdit();
        const QString file = m_main.app.folder.filePath(u"start%1.qly"_s.arg(i));
        if (memory == Memory::ForOneText)
            made.texts.setMaximumWeight(0);
        if (memory == Memory::ForFewSteps)
            made.history.setMaximumWeight(30'000);
        Log log;
        log.document = &made;
        log.file = file;
        m_logs.push_back(log);
        m_active = i;
        m_main.app.core.dialogs.saveNames = {file};
        m_main.app.core.dialogs.answers = {Answer::Yes};
        choose("mnuFileSaveAs");
        m_main.app.core.dialogs.answers.clear();
        made.history.startAnew();
        m_logs.back().first = stateOf(made);
        m_logs.back().positions = {{m_logs.back().first}};
        m_logs.back().saved = m_logs.back().positions[0].state;
        m_logs.back().savedAt = 0;
    }
}

const std::vector<Player::Deed> &Player::deeds()
{
    static const auto outline = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.command(name); }};
    };
    static const auto inserting = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.insert(name); }};
    };
    static const auto removing = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.remove(name); }};
    };
    static const auto text = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.inText(name); }};
    };
    static const auto pasting = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.paste(name); }};
    };
    static const auto fonts = [](const char *name, int weight) {
        return Deed{name, weight, [name](Player &player) { player.font(name); }};
    };
    static const std::vector<Deed> all = {
        inserting("mnuOutlineInsertAbove", 3),
        inserting("mnuOutlineInsertBelow", 4),
        inserting("mnuOutlineInsertChild", 5),
        outline("mnuOutlineIndent", 5),
        outline("mnuOutlineUnindent", 4),
        outline("mnuOutlineMoveUp", 5),
        outline("mnuOutlineMoveDown", 5),
        outline("mnuOutlineMoveFirst", 2),
        outline("mnuOutlineMoveLast", 2),
        outline("mnuOutlineExpand", 2),
        outline("mnuOutlineCollapse", 2),
        outline("mnuOutlineExpandAll", 1),
        outline("mnuOutlineCollapseAll", 1),
        outline("mnuOutlineExpandLevel2", 1),
        outline("mnuOutlineExpandLevel3", 1),
        outline("mnuOutlineCopy", 4),
        outline("mnuOutlinePaste", 4),
        outline("mnuOutlinePasteAndDelete", 3),
        removing("mnuOutlineDelete", 5),
        outline("mnuOutlineTaggedEntry", 3),
        outline("mnuOutlinePasteTaggedEntries", 1),
        removing("mnuOutlineDeleteTaggedEntries", 1),
        outline("mnuOutlineSortCurrent", 2),
        outline("mnuOutlineSortAll", 1),
        fonts("mnuOutlineFont", 1),
        {"rename", 4, [](Player &p) { p.label(); }},
        {"type", 30, &Player::type},
        {"move the caret", 4, &Player::moveCaret},
        {"select some text", 8, &Player::selectText},
        {"select entry", 14, &Player::select},
        {"open or close", 3, &Player::openOrClose},
        {"drag", 7, &Player::drag},
        text("mnuEditCut", 1),
        text("mnuEditCopy", 1),
        pasting("mnuEditPaste", 4),
        pasting("mnuEditPasteSpecial", 1),
        text("mnuEditDelete", 3),
        text("mnuEditSelectAll", 1),
        {"mnuEditClearEntryText", 1, &Player::clearText},
        text("mnuEditInsertTab", 1),
        text("mnuEditInsertLongDate", 1),
        text("mnuEditInsertShortDate", 1),
        text("mnuEditInsertTime", 1),
        text("mnuEditCaseLower", 1),
        text("mnuEditCaseProperName", 1),
        text("mnuEditCaseUpper", 1),
        text("mnuEditCaseToggle", 1),
        text("mnuEditFormatBold", 2),
        text("mnuEditFormatItalic", 1),
        text("mnuEditFormatStrikeThrough", 1),
        text("mnuEditFormatUnderline", 1),
        text("mnuEditFormatLeft", 1),
        text("mnuEditFormatCentre", 1),
        text("mnuEditFormatRight", 1),
        text("mnuEditFormatBullet", 2),
        text("mnuEditFormatIndent", 1),
        text("mnuEditFormatUnindent", 1),
        fonts("mnuEditCurrentFont", 2),
        fonts("mnuEditDocumentFont", 1),
        {"a larger or smaller text", 1,
         [](Player &p) { modFont::ChangeSelectedFontSize(p.oneIn(2) ? qint16(1) : qint16(-1)); }},
        {"replace all", 4, &Player::replaceAll},
        {"replace one", 2, &Player::replaceOne},
        {"save", 2, &Player::save},
        {"save as", 1, &Player::saveAs},
        {"another document", 5, &Player::anotherDocument},
        {"undo or redo", 30, &Player::undoOrRedo},
        {"go to a step", 3, &Player::goToAnyStep},
    };
    return all;
}

QString Player::play()
{
    static const int total = [] {
        int sum = 0;
        for (const Deed &deed : deeds())
            sum += deed.weight;
        return sum;
    }();
    m_kind = Kind::Work;
    // What the event loop does between two deeds: an editor that is given up goes.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (oneIn(5))
        QApplication::processEvents();
    if (!oneIn(8))
        document().view()->trvOutline.EndLabelEdit();
    if (document().tree.entryCount() > 25 && oneIn(2)) {
        remove("mnuOutlineDelete");
        return u"delete from a large outline"_s;
    }
    int drawn = draw(total);
    auto deed = deeds().begin();
    while ((drawn -= deed->weight) >= 0)
        ++deed;
    deed->run(*this);
    return QString::fromLatin1(deed->name) + u" in %1"_s.arg(m_active);
}

QString Player::fault()
{
    if (!m_failure.isEmpty())
        return m_failure;
    for (Log &log : m_logs) {
        const bool hasMoved = log.document->history.position() != log.position;
        const bool isActive = &log == &this->log();
        const bool looks = m_kind == Kind::Travel ? hasMoved || isActive : (isActive || hasMoved) && !oneIn(4);
        if (const QString found = faultIn(log, looks); !found.isEmpty())
            return u"document %1: "_s.arg(&log - m_logs.data()) + found;
    }
    const QStringList logged = m_main.app.logLines();
    const auto isError = [](const QString &line) { return line.contains(u"rror"); };
    if (const auto error = std::ranges::find_if(logged, isError); error != logged.end())
        return *error;
    if (iActionDepth != 0 || !DocumentActive()->view()->trvOutline.PaneVisible())
        return u"a command did not come to its end"_s;
    return QString();
}

QString Player::faultIn(Log &log, bool looksAtState)
{
    Document &looked = *log.document;
    const History &history = looked.history;
    if (const QString broken = looked.tree.brokenInvariant(); !broken.isEmpty())
        return broken;
    if (history.isStepOpen())
        return u"a step is open"_s;
    if (!looked.tree.root())
        return u"the root went"_s;
    std::optional<State> now;
    if (looksAtState)
        now = stateOf(looked);
    QString found;
    if (m_memory == Memory::Ample)
        found = m_kind == Kind::Travel && now ? faultOnTravel(log, *now) : faultAtWork(log, now);
    log.position = history.position();
    if (found.isEmpty() && now)
        found = faultOfSaved(log, *now);
    if (found.isEmpty() && &log == &this->log() && oneIn(6))
        found = faultOfPane(looked);
    return found;
}

// Where the history leads to is what was there. What is open stays so, until everything is undone.
QString Player::faultOnTravel(Log &log, const State &now)
{
    const History &history = log.document->history;
    const auto at = static_cast<size_t>(history.position());
    const int steps = history.stepCount();
    if (const int known = static_cast<int>(log.positions.size()) - 1; steps != known)
        return u"going back and forth made %1 steps of %2"_s.arg(steps).arg(known);
    Log::Position &position = log.positions[at];
    if (position.state && now.content != position.state->content)
        return u"another content at %1 (%2, %3): "_s.arg(at).arg(history.undoName(), history.redoName()) +
               firstDifference(now, *position.state);
    if (at == 0 && log.position > 0 && !history.canUndo() && position.state && now.saved != position.state->saved)
        return u"everything is undone, and other branches are open"_s;
    const bool hasMoved = log.position != static_cast<int>(at);
    const bool isAsSaved =
        log.savedAt == static_cast<int>(at) && log.saved->saved == now.saved && log.saved->selected == now.selected;
    if (at > 0)
        position = {now};
    if (hasMoved && isAsSaved && log.document->m_bDataChanged())
        return u"what was saved counts as changed"_s;
    return QString();
}

// A change is a step, or opens and closes something, and only behind a step nothing can be redone.
QString Player::faultAtWork(Log &log, const std::optional<State> &now)
{
    const History &history = log.document->history;
    const int position = history.position();
    const auto known = static_cast<int>(log.positions.size()) - 1;
    if (position < log.position)
        return u"work undid something"_s;
    const bool hasStep = position > log.position;
    if (!hasStep && history.stepCount() != known)
        return u"what could be redone went without a step"_s;
    if (hasStep && history.stepCount() != position)
        return u"something can be redone behind a new step"_s;
    if (hasStep) {
        log.positions.resize(static_cast<size_t>(log.position) + 1);
        log.positions.resize(static_cast<size_t>(position) + 1);
        if (log.savedAt && *log.savedAt > log.position && *log.savedAt != position)
            log.savedAt.reset();
    }
    Log::Position &here = log.positions[static_cast<size_t>(position)];
    if (!hasStep && now && here.state && history.canRedo() && now->content != here.state->content)
        return u"a change without a step: "_s + firstDifference(*now, *here.state);
    // Where it began is known.
    if (hasStep || position > 0)
        here = {now};
    return QString();
}

// What counts as saved is what the file holds.
QString Player::faultOfSaved(const Log &log, const State &now) const
{
    if (log.document->m_bDataChanged() || !log.saved)
        return QString();
    if (now.content != log.saved->content)
        return u"it counts as saved, but "_s + firstDifference(now, *log.saved);
    return QString();
}

// The pane shows the text of the selected entry, in the document's fonts.
QString Player::faultOfPane(const Document &document) const
{
    const Entry *selected = document.tree.selected();
    const auto &form = static_cast<frmDocument &>(document.view()->window);
    if (!selected)
        return u"nothing is selected"_s;
    if (document.texts.entryAsShown() != selected)
        return u"the pane shows another text than that of the selected entry"_s;
    QTextDocument stored;
    rtf::read(NodeTextDecompressIfRequired(document.tree.storedText(selected)), stored);
    if (stored.toPlainText() != form.textBox->document()->toPlainText())
        return u"the pane shows %1, stored is %2"_s.arg(form.textBox->document()->toPlainText(), stored.toPlainText());
    if (document.shownOutlineFont() != form.treeView->Font())
        return u"the outline is shown in another font"_s;
    return QString();
}

QString Player::faultOfWalk(Log &log)
{
    QString found;
    if (m_memory == Memory::Ample)
        found = faultOnTravel(log, stateOf(*log.document));
    log.position = log.document->history.position();
    return found.isEmpty() ? log.document->tree.brokenInvariant() : found;
}

// Undoes everything, or redoes it.
QString Player::walk(Log &log, bool forth)
{
    Document &document = *log.document;
    // What was opened and closed alone is the last that is undone.
    for (int most = document.history.stepCount() + 1; forth ? document.history.canRedo() : document.history.canUndo();
         --most) {
        if (most == 0)
            return u"there is no end of undoing"_s;
        if (!(forth ? redoStep(document) : undoStep(document)))
            return forth ? u"a step is not redone"_s : u"a step is not undone"_s;
        if (const QString found = faultOfWalk(log); !found.isEmpty())
            return found;
    }
    return QString();
}

// Where memory is short, several undone steps may become one on the way: only the ends are certain to be met again.
QString Player::walkToTheEnds()
{
    m_kind = Kind::Work;
    endLabelEdits();
    if (!isRightSoFar())
        return m_failure;
    m_kind = Kind::Travel;
    for (Log &log : m_logs) {
        Document &document = *log.document;
        if (const QString found = walk(log, true); !found.isEmpty())
            return found;
        const State last = stateOf(document);
        const int end = document.history.position();
        for (int round = 0; round < 2; ++round) {
            if (const QString found = walk(log, false); !found.isEmpty())
                return found;
            const State first = stateOf(document);
            if (m_memory != Memory::ForFewSteps && first.content != log.first.content)
                return u"everything undone: "_s + firstDifference(first, log.first);
            const std::optional<State> &known = log.positions[0].state;
            if (m_memory == Memory::Ample && known && first.saved != known->saved)
                return u"everything undone: "_s + firstDifference(first, *known);
            if (const QString found = walk(log, true); !found.isEmpty())
                return found;
            const State again = stateOf(document);
            const bool isAtTheEnd = m_memory != Memory::ForFewSteps || document.history.position() == end;
            if (isAtTheEnd && again.content != last.content)
                return u"everything redone: "_s + firstDifference(again, last);
        }
    }
    return QString();
}

Entry *Player::drawEntry(Document &document)
{
    return document.tree.collection().at(draw(document.tree.entryCount()) + 1);
}

QString Player::drawWord()
{
    static const QStringList words = {u"a"_s, u"cat"_s, u"Dog"_s, u"ü"_s, u"the cat"_s, u"x y z"_s, u"\U0001F600"_s};
    return oneOf(words);
}

void Player::choose(const char *name)
{
    QAction *&action = m_actions[name];
    if (!action)
        action = m_main.action(QString::fromLatin1(name));
    if (!action)
        m_failure = u"no command "_s + QString::fromLatin1(name);
    else if (m_main.main.dispatcher().isEnabled(name, m_main.main.dispatcher().state()))
        action->trigger();
}

void Player::inText(const char *name)
{
    choose("mnuViewGoToText");
    choose(name);
}

void Player::command(const char *name)
{
    if (oneIn(4))
        choose(oneIn(2) ? "mnuViewGoToText" : "mnuViewGoToOutline");
    choose(name);
}

// The label of what was inserted is open: it is typed, left as it is, or given up.
void Player::insert(const char *name)
{
    choose(name);
    if (oneIn(2))
        label();
}

void Player::label()
{
    QLineEdit *editor = form().treeView->findChild<QLineEdit *>();
    if (!editor || editor->isHidden()) {
        choose("mnuOutlineRename");
        editor = nullptr;
        for (QLineEdit *each : form().treeView->findChildren<QLineEdit *>())
            editor = each->isHidden() ? editor : each;
    }
    if (!editor)
        return;
    QTest::keyClicks(editor, QString(1 + draw(2), QLatin1Char("abcABC"[draw(6)])));
    QTest::keyClick(editor, oneIn(5) ? Qt::Key_Escape : Qt::Key_Return);
}

void Player::remove(const char *name)
{
    m_main.app.core.dialogs.answers = {oneIn(6) ? Answer::No : Answer::Yes};
    choose(name);
    m_main.app.core.dialogs.answers.clear();
}

void Player::type()
{
    choose("mnuViewGoToText");
    if (box().document()->characterCount() > 600)
        return clearText();
    switch (draw(8)) {
    case 0:
        QTest::keyClick(&box(), Qt::Key_Return);
        break;
    case 1:
        for (int times = draw(4); times >= 0; --times)
            QTest::keyClick(&box(), Qt::Key_Backspace);
        break;
    case 2:
        QTest::keyClick(&box(), Qt::Key_Delete);
        break;
    default:
        for (int times = draw(6); times >= 0; --times)
            QTest::keyClick(&box(), oneIn(5) ? Qt::Key_Space : static_cast<Qt::Key>(Qt::Key_A + draw(26)));
    }
}

void Player::moveCaret()
{
    static constexpr Qt::Key keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home,
                                       Qt::Key_End,  Qt::Key_Up,    Qt::Key_Down};
    choose("mnuViewGoToText");
    QTest::keyClick(&box(), oneOf(keys), oneIn(3) ? Qt::ControlModifier : Qt::NoModifier);
}

void Player::selectText()
{
    choose("mnuViewGoToText");
    const auto length = static_cast<int>(box().Text().size());
    box().setSelStart(draw(length + 1));
    box().setSelLength(draw(std::max(1, std::min(40, length - box().SelStart()))));
}

void Player::paste(const char *name)
{
    FakeClipboard &clipboard = m_main.app.core.clipboard;
    clipboard.clear();
    clipboard.heldPicture.clear();
    switch (draw(6)) {
    case 0:
        clipboard.heldPicture = m_picture;
        break;
    case 1:
        clipboard.heldRich = "{\\rtf1\\trowd\\cellx1000\\cellx2000 a\\cell cat\\cell\\row\\pard behind\\par}";
        clipboard.held = u"a cat behind"_s;
        break;
    case 2:
        clipboard.heldRich = "{\\rtf1{\\b bold} {\\i cat}\\par{\\pntext\\'B7\\tab}{\\*\\pn\\pnlvlblt}item\\par}";
        break;
    case 3:
        clipboard.heldRich = "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\qc\\cf1 red\\par\\pard\\fs40 large}";
        break;
    default:
        clipboard.held = drawWord() + (oneIn(2) ? u"\r\nand more"_s : QString());
    }
    inText(name);
}

void Player::font(const char *name)
{
    static const QStringList names = {u"DejaVu Serif"_s, u"DejaVu Sans"_s, u"DejaVu Sans Mono"_s};
    FontAttributes font;
    if (!oneIn(3))
        font.name = oneOf(names);
    if (oneIn(2))
        font.size = 8 + draw(12);
    if (oneIn(3))
        font.bold = oneIn(2);
    if (oneIn(3))
        font.colour = QColor(oneIn(2) ? Qt::red : Qt::blue);
    std::optional<FontAttributes> answer = font;
    if (oneIn(6))
        answer.reset();
    m_main.app.core.dialogs.fonts = {answer};
    inText(name);
    m_main.app.core.dialogs.fonts.clear();
}

void Player::clearText()
{
    m_main.app.core.dialogs.answers = {oneIn(6) ? Answer::No : Answer::Yes};
    inText("mnuEditClearEntryText");
    m_main.app.core.dialogs.answers.clear();
}

void Player::select()
{
    modNodes::NodeSelect(document(), drawEntry(document()));
}

// As a click on the sign before an entry does.
void Player::openOrClose()
{
    const Entry *entry = drawEntry(document());
    const QModelIndex index = document().tree.indexOf(entry);
    form().treeView->setExpanded(index, !form().treeView->isExpanded(index));
}

// Within a document, or from the one to another one where it is copied.
void Player::drag()
{
    const size_t source = oneIn(3) ? static_cast<size_t>(draw(3)) : static_cast<size_t>(m_active);
    Document &from = *m_logs[source].document;
    Entry *dragged = drawEntry(from);
    Entry *target = drawEntry(document());
    if (dragged == target || dragged->isRoot())
        return;
    modNodes::NodeSelect(from, dragged);
    DragState &state = dragState();
    state.entry.set(&from.tree, dragged);
    const DropPlacements places = dropPlacements(*dragged, *target);
    if (places.any()) {
        state.relationship = plainRelationship(places);
        if (places.child && oneIn(2))
            state.relationship = Relationship::tvwChild;
        state.copy = &from != &document() || oneIn(3);
        dropEntry(document(), *target);
    }
    ResetDraggingFlags();
}

void Player::replaceAll()
{
    if (oneIn(4))
        choose("mnuViewGoToText");
    g_sSearchFind = drawWord();
    g_sSearchReplace = oneIn(5) ? QString() : drawWord();
    g_sSearchScope = QString::number(draw(3));
    g_bSearchMatchCase = oneIn(3);
    g_bSearchWholeWord = oneIn(3);
    g_bSearchBackwards = oneIn(6);
    modSearch::SearchReplaceAll();
    m_main.app.core.dialogs.notices.clear();
}

void Player::replaceOne()
{
    g_sSearchFind = drawWord();
    g_sSearchReplace = drawWord();
    g_sSearchScope = QString::number(draw(3));
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
    if (modSearch::SearchPerform() && !oneIn(3))
        modSearch::SearchPerformReplace();
    m_main.app.core.dialogs.notices.clear();
}

void Player::noteSaved(Log &saved)
{
    saved.saved = stateOf(*saved.document);
    saved.savedAt = saved.document->history.position();
    if (saved.savedAt == 0)
        saved.positions[0] = {saved.saved};
}

void Player::save()
{
    Log &saved = log();
    const bool wasChanged = saved.document->m_bDataChanged();
    m_main.app.core.dialogs.answers = {Answer::Yes, Answer::Yes};
    choose("mnuFileSave");
    m_main.app.core.dialogs.answers.clear();
    if (saved.document->m_bDataChanged()) {
        m_failure = u"it counts as changed behind a save"_s;
        return;
    }
    QFile file(saved.file);
    if (!file.open(QIODevice::ReadOnly) || file.readAll() != nativeBytes(saved.document->outline())) {
        if (wasChanged)
            m_failure = u"the file is another than the document"_s;
        return;
    }
    if (wasChanged)
        noteSaved(saved);
}

void Player::saveAs()
{
    Log &saved = log();
    // A document keeps the few names that it has.
    saved.file = m_main.app.folder.filePath(u"saved %1 %2.qly"_s.arg(m_active).arg(++m_files % 3));
    m_main.app.core.dialogs.saveNames = {saved.file};
    m_main.app.core.dialogs.answers = {Answer::Yes, Answer::Yes};
    choose("mnuFileSaveAs");
    m_main.app.core.dialogs.answers.clear();
    if (!m_main.app.core.dialogs.saveNames.empty() || saved.document->m_bDataChanged()) {
        m_failure = u"a document is not saved under another name"_s;
        return;
    }
    noteSaved(saved);
}

void Player::anotherDocument()
{
    m_active = draw(static_cast<int>(m_logs.size()));
    form().activate();
    QApplication::processEvents();
    if (DocumentActive() != &document())
        m_failure = u"a document does not become the active one"_s;
}

// For a deed of two parts.
bool Player::isRightSoFar()
{
    m_failure = fault();
    return m_failure.isEmpty();
}

// An open label, and one that Return was pressed in just now, is renamed before anything is undone, which is a step.
void Player::endLabelEdits()
{
    for (const Log &log : m_logs)
        log.document->view()->trvOutline.EndLabelEdit();
}

void Player::travel(const std::function<void()> &go)
{
    endLabelEdits();
    if (!isRightSoFar())
        return;
    m_kind = Kind::Travel;
    go();
}

void Player::undoOrRedo()
{
    travel([this] {
        const bool byKey = oneIn(3);
        const bool redoes = oneIn(3);
        QWidget *pane = oneIn(2) ? static_cast<QWidget *>(form().textBox) : form().treeView;
        for (int times = oneIn(4) ? draw(12) : 1; times > 0; --times) {
            if (!byKey)
                choose(redoes ? "mnuToolsRedo" : "mnuToolsUndo");
            else if (pane->setFocus(); redoes)
                QTest::keyClick(pane, Qt::Key_Y, Qt::ControlModifier);
            else
                QTest::keyClick(pane, Qt::Key_Z, Qt::ControlModifier);
        }
    });
}

void Player::goToAnyStep()
{
    travel([this] { modTools::ToolsGoTo(draw(document().history.stepCount() + 1)); });
}

} // namespace undoRandom

class tst_UndoRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everythingIsUndoneAndRedone_data();
    void everythingIsUndoneAndRedone();

private:
    int m_steps = 3000;
};

void tst_UndoRandom::initTestCase()
{
    if (qEnvironmentVariableIsSet("QUILLERY_UNDO_STEPS"))
        m_steps = qEnvironmentVariableIntValue("QUILLERY_UNDO_STEPS");
}

void tst_UndoRandom::everythingIsUndoneAndRedone_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<int>("memory");
    // Long runs are of some thousand steps, so that a history grows long but is walked through often.
    constexpr int stepsOfARun = 2000;
    const int runs = std::max(6, m_steps / stepsOfARun);
    for (int seed = 1; seed <= runs; ++seed) {
        using undoRandom::Memory;
        const Memory memory = seed % 6 == 5 ? Memory::ForOneText : seed % 6 == 0 ? Memory::ForFewSteps : Memory::Ample;
        QTest::addRow("seed %d", seed) << seed << static_cast<int>(memory);
    }
}

void tst_UndoRandom::everythingIsUndoneAndRedone()
{
    QFETCH(const int, seed);
    QFETCH(const int, memory);
    undoRandom::Player player(static_cast<quint32>(seed), static_cast<undoRandom::Memory>(memory));
    const int steps = std::min(2000, m_steps / 6);
    QStringList played;
    for (int i = 0; i < steps; ++i) {
        played.append(player.play());
        if (const QString fault = player.fault(); !fault.isEmpty())
            QFAIL(qPrintable(u"After step %1 (%2): %3"_s.arg(i).arg(played.mid(qMax(0, i - 9)).join(u", "_s), fault)));
    }
    const QString fault = player.walkToTheEnds();
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
}

QTEST_MAIN(tst_UndoRandom)
#include "tst_UndoRandom.moc"
