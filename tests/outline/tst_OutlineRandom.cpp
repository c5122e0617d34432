// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/OpenOutline.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/RawOutline.h"

#include "document/modNodes.h"
#include "model/StoredText.h"
#include "outline/EntryDrag.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

// Random sequences of commands on several documents at once, each compared after every command with the same done step
// by step. The commands draw on each other's leavings: tags, the copied entry, closed branches, empty outlines.

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr int stepsDivisor = 4;
#else
constexpr int stepsDivisor = 1;
#endif

// The editor on the pane, or null; one that was closed lives on until the event loop deletes it.
QLineEdit *openEditor(const TreeView &view)
{
    const QList<QLineEdit *> editors = view.findChildren<QLineEdit *>();
    const auto found = std::find_if(editors.begin(), editors.end(), [](auto *editor) { return !editor->isHidden(); });
    return found == editors.end() ? nullptr : *found;
}

class OpenOutlines final : public DocumentWindows
{
public:
    Document &createDocument(std::unique_ptr<Outline>) override
    {
        qFatal("no command of the outline opens a document");
    }

    Document *activeDocument() const override { return &active->document; }

    std::vector<Document *> documents() const override
    {
        std::vector<Document *> all;
        for (const std::unique_ptr<OpenOutline> &outline : open)
            all.push_back(&outline->document);
        return all;
    }

    void closeMainWindow() override {}

    void say(const QString &) override {}

    std::vector<std::unique_ptr<OpenOutline>> open;
    OpenOutline *active = nullptr;
};

class Player
{
public:
    Player(quint32 seed, Panes panes)
        : m_random(seed)
        , m_panes(panes)
    {
        ports().windows = &m_windows;
        for (int i = 0; i < 3; ++i)
            m_windows.open.push_back(std::make_unique<OpenOutline>(panes, m_copied));
        m_windows.active = m_windows.open.front().get();
    }

    ~Player()
    {
        ResetDraggingFlags();
        modOutline::copiedEntry().clear();
        m_windows.open.clear();
    }

    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;

    // Performs one command and returns its name.
    QString play();
    QString difference();
    QString viewDifference() const;

private:
    // A command and how often it is drawn.
    struct Command {
        const char *name;
        int weight;
        std::function<void(Player &)> play;
    };

    // A random entry of the active outline in both forms.
    struct Pair {
        Entry *entry;
        SlowEntry *slow;
    };

    static Command both(const char *name, int weight, void (*run)(), void (LiteralOutline::*literal)());
    static const std::vector<Command> &commands();

    int draw(int below) { return static_cast<int>(m_random.bounded(below)); }

    bool oneIn(int times) { return draw(times) == 0; }

    LiteralOutline &literal() const { return m_windows.active->literal; }

    Document &document() const { return m_windows.active->document; }

    Pair drawEntry();
    QString drawLabel();

    void insert(void (*run)(), Relationship relationship);
    void remove(void (*run)(), void (LiteralOutline::*literal)());
    void paste(void (*run)(), bool removeSource);
    void openOrClose(void (*run)(), void (LiteralOutline::*literal)());
    void expandToLevel();
    void rename();
    void type();
    void undo();
    void changeBehindThePane();
    void select(const Pair &pair);
    void tagOne();
    void openOrCloseOne();
    void drag();
    void dropBeside(const Pair &dragged, const Pair &target);
    void deselect();
    void replaceDocument();

    FakePorts m_fakes;
    ErrorRecorder m_errors;
    int m_errorsExpected = 0;
    QRandomGenerator m_random;
    Panes m_panes;
    OpenOutlines m_windows;
    LiteralOutline::Copied m_copied;
    int m_texts = 0;
    QString m_failure;
};

Player::Command Player::both(const char *name, int weight, void (*run)(), void (LiteralOutline::*literal)())
{
    return {name, weight, [run, literal](Player &player) {
                run();
                (player.literal().*literal)();
            }};
}

const std::vector<Player::Command> &Player::commands()
{
    using namespace modOutline;
    using Literal = LiteralOutline;
    static const std::vector<Command> all = {
        {"insert above", 3, [](Player &p) { p.insert(OutlineInsertAbove, Relationship::tvwPrevious); }},
        {"insert below", 3, [](Player &p) { p.insert(OutlineInsertBelow, Relationship::tvwNext); }},
        {"insert child", 4, [](Player &p) { p.insert(OutlineInsertChild, Relationship::tvwChild); }},
        both("indent", 6, OutlineIndent, &Literal::indent),
        both("unindent", 5, OutlineUnindent, &Literal::unindent),
        both("move up", 6, OutlineMoveUp, &Literal::moveUp),
        both("move down", 6, OutlineMoveDown, &Literal::moveDown),
        both("move first", 2, OutlineMoveFirst, &Literal::moveFirst),
        both("move last", 2, OutlineMoveLast, &Literal::moveLast),
        both("copy", 5, OutlineCopy, &Literal::copy),
        {"paste", 5, [](Player &p) { p.paste(OutlinePaste, false); }},
        {"paste and delete", 3, [](Player &p) { p.paste(OutlinePasteAndDelete, true); }},
        {"delete", 4, [](Player &p) { p.remove(OutlineDelete, &Literal::deleteSelected); }},
        both("tag", 3, OutlineTaggedEntry, &Literal::toggleTag),
        {"tag another", 2, &Player::tagOne},
        both("paste tagged", 1, OutlinePasteTaggedEntries, &Literal::pasteTagged),
        {"delete tagged", 1, [](Player &p) { p.remove(OutlineDeleteTaggedEntries, &Literal::deleteTagged); }},
        {"expand", 3, [](Player &p) { p.openOrClose(OutlineExpand, &Literal::expand); }},
        {"collapse", 3, [](Player &p) { p.openOrClose(OutlineCollapse, &Literal::collapse); }},
        both("expand all", 1, OutlineExpandAll, &Literal::expandAll),
        both("collapse all", 1, OutlineCollapseAll, &Literal::collapseAll),
        {"expand to level", 2, &Player::expandToLevel},
        {"open or close another", 3, &Player::openOrCloseOne},
        both("sort current", 2, OutlineSortCurrent, &Literal::sortCurrent),
        both("sort all", 1, OutlineSortAll, &Literal::sortAll),
        {"rename", 5, &Player::rename},
        {"type", 4, &Player::type},
        {"undo", 3, &Player::undo},
        {"change a text behind the pane", 2, &Player::changeBehindThePane},
        {"select", 25, [](Player &p) { p.select(p.drawEntry()); }},
        {"go down", 2,
         [](Player &p) {
             modNodes::NodeGoDown(p.document());
             p.literal().goDown();
         }},
        {"drag", 14, &Player::drag},
        {"another window", 6,
         [](Player &p) { p.m_windows.active = p.m_windows.open[static_cast<size_t>(p.draw(3))].get(); }},
    };
    return all;
}

QString Player::play()
{
    // An editor that an insertion left open ends before the next command, as in the program; now and then it does not.
    if (!oneIn(8))
        document().view()->trvOutline.EndLabelEdit();
    const char *name = nullptr;
    if (literal().tree.collection.size() > 40 && oneIn(2)) {
        name = "delete from a large outline";
        remove(modOutline::OutlineDelete, &LiteralOutline::deleteSelected);
    } else if (oneIn(2000)) {
        name = "deselect";
        deselect();
    } else if (oneIn(1000)) {
        name = "replace the document";
        replaceDocument();
    } else {
        static const int total = [] {
            int sum = 0;
            for (const Command &command : commands())
                sum += command.weight;
            return sum;
        }();
        int drawn = draw(total);
        auto command = commands().begin();
        while ((drawn -= command->weight) >= 0)
            ++command;
        name = command->name;
        command->play(*this);
    }
    for (const std::unique_ptr<OpenOutline> &outline : m_windows.open)
        outline->textShown = outline->textShown || outline->literal.selected();
    return QString::fromLatin1(name);
}

QString Player::difference()
{
    if (!m_failure.isEmpty())
        return m_failure;
    if (m_errors.count() != m_errorsExpected)
        return u"other errors than expected: "_s + m_errors.summary().join(u", "_s);
    m_errors.clear();
    m_errorsExpected = 0;
    const bool texts = oneIn(4);
    for (const std::unique_ptr<OpenOutline> &outline : m_windows.open) {
        if (const QString found = outline->difference(texts); !found.isEmpty())
            return found;
    }
    if (iActionDepth != 0 || m_fakes.pointer.hourglass || !document().view()->trvOutline.PaneVisible())
        return u"a command did not come to its end"_s;
    const EntryRef &copied = modOutline::copiedEntry();
    if (!copied.entry() || !m_copied.entry)
        return copied.entry() || m_copied.entry ? u"the copied entry lives or is gone otherwise"_s : QString();
    const bool same = copied.tree()->key(copied.entry()) == SlowTree::keyOf(m_copied.entry) &&
                      copied.tree()->storedText(copied.entry()) == m_copied.entry->text;
    return same ? QString() : u"another entry is the copied one"_s;
}

QString Player::viewDifference() const
{
    for (const std::unique_ptr<OpenOutline> &outline : m_windows.open) {
        if (const QString found = shownDifference(*outline->view, outline->document.tree); !found.isEmpty())
            return found;
    }
    return QString();
}

Player::Pair Player::drawEntry()
{
    const std::vector<SlowEntry *> &entries = literal().tree.collection;
    if (entries.empty())
        return {nullptr, nullptr};
    const int index = draw(static_cast<int>(entries.size()));
    return {document().tree.collection().at(index + 1), entries[static_cast<size_t>(index)]};
}

QString Player::drawLabel()
{
    return QString(draw(3), QLatin1Char("abcABCdef"[draw(9)]));
}

void Player::insert(void (*run)(), Relationship relationship)
{
    run();
    literal().insertEntry(relationship);
}

// Mostly the question is answered with Yes.
void Player::remove(void (*run)(), void (LiteralOutline::*literally)())
{
    const Answer answer = oneIn(5) ? Answer::No : Answer::Yes;
    m_fakes.dialogs.answers = {answer};
    run();
    m_fakes.dialogs.answers.clear();
    m_fakes.dialogs.questions.clear();
    if (answer == Answer::Yes)
        (literal().*literally)();
    else if (run == modOutline::OutlineDeleteTaggedEntries)
        literal().select(literal().selected());
}

void Player::paste(void (*run)(), bool removeSource)
{
    run();
    literal().paste(removeSource);
}

// Without a selected entry it is an error.
void Player::openOrClose(void (*run)(), void (LiteralOutline::*literally)())
{
    m_errorsExpected = literal().selected() ? 0 : 1;
    run();
    (literal().*literally)();
}

void Player::expandToLevel()
{
    const int level = 1 + draw(7);
    modOutline::OutlineExpandToLevel(level);
    literal().expandToLevel(level);
}

void Player::rename()
{
    const QString label = drawLabel();
    modOutline::OutlineRename();
    if (!literal().selected())
        return;
    if (TreeView *view = m_windows.active->view) {
        QLineEdit *editor = openEditor(*view);
        // A row that is hidden in a closed branch cannot be edited.
        if (!editor)
            return;
        editor->setText(label);
        view->EndLabelEdit();
    } else {
        rawOutline(document()).tree.setData(document().tree.indexOf(document().tree.selected()), label);
    }
    literal().selected()->label = label;
}

void Player::type()
{
    TextPane &pane = document().view()->txtRTF;
    // What the pane shows is still another entry's.
    if (!literal().selected())
        return;
    pane.setSelText(u"text %1 "_s.arg(++m_texts));
    literal().selected()->text = NodeTextCompressIfRequired(pane.TextRTF());
}

void Player::undo()
{
    if (m_panes != Panes::RealWindow || !literal().selected())
        return;
    auto &box = dynamic_cast<RichTextBox &>(document().view()->txtRTF);
    if (!box.document()->isUndoAvailable())
        return;
    box.undo();
    // A text that is as it was read is stored as it was, byte for byte.
    literal().selected()->text = box.document()->isUndoAvailable()
                                     ? NodeTextCompressIfRequired(box.TextRTF())
                                     : document().tree.storedText(document().tree.selected());
}

// As an import or a replacement in all texts does, and a search that shows one text after the other.
void Player::changeBehindThePane()
{
    const Pair changed = drawEntry();
    if (!changed.entry)
        return;
    if (oneIn(2)) {
        changed.slow->text = NodeTextCompressIfRequired("text " + QByteArray::number(++m_texts));
        rawOutline(document()).tree.setStoredText(changed.entry, changed.slow->text);
    } else {
        modNodes::NodeTextGet(document(), changed.entry);
    }
    if (literal().selected())
        select({document().tree.selected(), literal().selected()});
    else
        m_windows.active->textShown = false;
}

void Player::select(const Pair &pair)
{
    modNodes::NodeSelect(document(), pair.entry);
    literal().select(pair.slow);
}

void Player::tagOne()
{
    const Pair pair = drawEntry();
    if (!pair.entry || pair.entry->isRoot())
        return;
    modNodes::NodeTagToggle(document(), pair.entry);
    pair.slow->tagged = !pair.slow->tagged;
}

// As the user does with the mouse. A window selects a branch that is closed.
void Player::openOrCloseOne()
{
    const Pair pair = drawEntry();
    if (!pair.entry)
        return;
    const bool opens = oneIn(2);
    const bool selects =
        m_panes == Panes::RealWindow && pair.slow->expanded && !opens && modNodes::nodCurrent().entry() != pair.entry;
    rawOutline(document()).tree.setExpanded(pair.entry, opens);
    pair.slow->expanded = opens;
    if (selects)
        literal().select(pair.slow);
}

void Player::drag()
{
    const Pair dragged = drawEntry();
    const Pair target = drawEntry();
    if (!dragged.entry)
        return;
    select(dragged);
    dragState().entry.set(&document().tree, dragged.entry);
    if (target.entry != dragged.entry) {
        dropBeside(dragged, target);
    } else if (oneIn(2)) {
        modOutline::OutlineIndent();
        literal().indent();
    } else {
        modOutline::OutlineUnindent();
        literal().unindent();
    }
    ResetDraggingFlags();
}

// With the left button at the place that is preferred, with the right one at any that is offered.
void Player::dropBeside(const Pair &dragged, const Pair &target)
{
    const DropPlacements found = dropPlacements(*dragged.entry, *target.entry);
    const auto [previous, next, child] = literal().placements(dragged.slow, target.slow);
    if (found != DropPlacements{previous, next, child}) {
        m_failure = u"other places are offered for a drop"_s;
        return;
    }
    if (!found.any())
        return;
    DragState &state = dragState();
    state.relationship = plainRelationship(found);
    if (oneIn(2)) {
        std::vector<Relationship> offered;
        if (previous)
            offered.push_back(Relationship::tvwPrevious);
        if (next)
            offered.push_back(Relationship::tvwNext);
        if (child)
            offered.push_back(Relationship::tvwChild);
        state.relationship = offered[static_cast<size_t>(draw(static_cast<int>(offered.size())))];
    }
    state.copy = oneIn(3);
    const Relationship relationship = state.relationship;
    const bool copies = state.copy;
    dropEntry(document(), *target.entry);
    literal().drop(dragged.slow, target.slow, relationship, copies);
}

void Player::deselect()
{
    rawOutline(document()).tree.select(nullptr);
    literal().tree.selected = nullptr;
    m_windows.active->textShown = false;
}

void Player::replaceDocument()
{
    const size_t place = static_cast<size_t>(draw(3));
    std::unique_ptr<OpenOutline> &outline = m_windows.open[place];
    if (m_copied.outline == &outline->literal)
        m_copied = {};
    const bool wasActive = m_windows.active == outline.get();
    outline = std::make_unique<OpenOutline>(m_panes, m_copied);
    if (wasActive)
        m_windows.active = outline.get();
}

} // namespace

class tst_OutlineRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commands_data();
    void commands();
    void commandsBeforeTheModelTester_data();
    void commandsBeforeTheModelTester();
    void commandsWithTheOutlineShown_data();
    void commandsWithTheOutlineShown();
    void commandsInRealWindows_data();
    void commandsInRealWindows();

private:
    static void seeds(int count);
    static void play(Panes panes, int steps);
};

void tst_OutlineRandom::initTestCase()
{
    // The literal outline sorts without a locale.
    QLocale::setDefault(QLocale::c());
}

void tst_OutlineRandom::seeds(int count)
{
    QTest::addColumn<quint32>("seed");
    for (int seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %d", seed) << static_cast<quint32>(seed);
}

void tst_OutlineRandom::play(Panes panes, int steps)
{
    QFETCH(const quint32, seed);
    Player player(seed, panes);
    QStringList played;
    for (int i = 0; i < steps / stepsDivisor; ++i) {
        played.append(player.play());
        QString difference = player.difference();
        if (difference.isEmpty() && panes >= Panes::RealOutline && i % 8 == 0)
            difference = player.viewDifference();
        if (!difference.isEmpty())
            QFAIL(qPrintable(
                u"After command %1 (%2): %3"_s.arg(i).arg(played.mid(qMax(0, i - 7)).join(u", "_s), difference)));
    }
}

void tst_OutlineRandom::commands_data()
{
    seeds(12);
}

void tst_OutlineRandom::commands()
{
    play(Panes::Fake, 25000);
}

void tst_OutlineRandom::commandsBeforeTheModelTester_data()
{
    seeds(5);
}

void tst_OutlineRandom::commandsBeforeTheModelTester()
{
    play(Panes::FakeWithModelTester, 2000);
}

void tst_OutlineRandom::commandsWithTheOutlineShown_data()
{
    seeds(5);
}

void tst_OutlineRandom::commandsWithTheOutlineShown()
{
    play(Panes::RealOutline, 6000);
}

void tst_OutlineRandom::commandsInRealWindows_data()
{
    seeds(4);
}

void tst_OutlineRandom::commandsInRealWindows()
{
    play(Panes::RealWindow, 3000);
}

QTEST_MAIN(tst_OutlineRandom)
#include "tst_OutlineRandom.moc"
