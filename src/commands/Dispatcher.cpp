// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/Dispatcher.h"

#include "commands/CommandTable.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "model/OutlineOrder.h"
#include "util/Procedure.h"

#include <QLocale>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace
{

// Menus opened with the mouse and buttons take no focus away, so a label being edited would otherwise stay open over
// the changed outline.
void endLabelEdit()
{
    if (Document *document = DocumentActive())
        document->view()->trvOutline.EndLabelEdit();
}

// What a command did to the active document, said when it is done.
class Extent
{
public:
    Extent()
        : m_document(DocumentActive())
        , m_position(m_document ? m_document->history.position() : 0)
        , m_entries(m_document ? m_document->tree.entryCount() : 0)
        , m_text(shownText())
    {
        if (m_document && m_document->tree.areSeveralSelected())
            m_branches = static_cast<int>(branchesOf(m_document->tree.selectedEntries()).size());
    }

    bool isOfSeveral() const { return m_branches > 1; }

    void tell() const
    {
        if (!m_document || DocumentActive() != m_document || m_document->history.position() <= m_position)
            return;
        const int gone = m_entries - m_document->tree.entryCount();
        // One entry was seen to go.
        if (gone == 1)
            return;
        QString said = m_document->history.undoName();
        said[0] = said[0].toUpper();
        if (isOfSeveral() && gone > m_branches)
            said += u" (%1 with their branches)"_s.arg(gone);
        else if (!isOfSeveral() && gone > 1)
            said += u" (%1 entries)"_s.arg(gone);
        // A text that was taken away as a whole.
        if (const ShownText text = shownText(); text.entry == m_text.entry && text.size == 0 && m_text.size > 0)
            said += u" (%1)"_s.arg(m_text.inWords());
        m_document->sayOfStep(said + u" – Ctrl+Z takes it back"_s);
    }

private:
    struct ShownText {
        EntryId entry = EntryId::None;
        // In characters; of what is not shown whole, in bytes.
        qint64 size = 0;
        bool isWhole = true;

        QString inWords() const
        {
            if (!isWhole)
                return QLocale::system().formattedDataSize(size);
            return size == 1 ? u"one character"_s : u"%L1 characters"_s.arg(size);
        }
    };

    ShownText shownText() const
    {
        const auto &text = m_document ? m_document->texts.shown() : nullptr;
        if (!text)
            return {};
        if (const Entry *entry = m_document->texts.shownEntry(); entry && text->state() != TextState::Whole)
            return {text->entry(), m_document->tree.storedText(entry).size(), false};
        return {text->entry(), text->document().characterCount() - 1, true};
    }

    Document *m_document;
    int m_position;
    int m_entries;
    ShownText m_text;
    // How many branches are selected; 0 while one entry is.
    int m_branches = 0;
};

} // namespace

Dispatcher::Dispatcher(std::function<CommandState()> state)
    : m_state(std::move(state))
{
}

void Dispatcher::bind(std::string_view command, Run run)
{
    const std::size_t row = commandRow(command);
    Q_ASSERT(row != noRow);
    m_bound[commandTable[row].name] = std::move(run);
}

bool Dispatcher::isBound(std::string_view command) const
{
    if (const auto bound = m_bound.find(command); bound != m_bound.end())
        return static_cast<bool>(bound->second);
    const std::size_t row = commandRow(command);
    return row != noRow && commandTable[row].routine.run;
}

QStringList Dispatcher::unbound() const
{
    QStringList names;
    for (const CommandRow &row : commandTable) {
        if (!row.routine.name.empty() && !isBound(row.name))
            names.append(toText(row.name));
    }
    return names;
}

bool Dispatcher::isEnabled(std::string_view command, const CommandState &state) const
{
    const std::size_t row = commandRow(command);
    if (row == noRow || (commandTable[row].kind != RowKind::Menu && !isBound(command)))
        return false;
    for (std::size_t at = row; at != noRow; at = commandRow(commandTable[at].parent)) {
        if (!commandTable[at].rule(state))
            return false;
    }
    return true;
}

void Dispatcher::run(std::string_view command)
{
    if (const std::size_t row = commandRow(command); row != noRow)
        run(command, commandTable[row].argument);
}

void Dispatcher::run(std::string_view command, int argument)
{
    const std::size_t row = commandRow(command);
    if (!isEnabled(command))
        return;
    const Extent extent;
    const QScopedValueRollback running(m_running, &commandTable[row]);
    // The names in the table end where C strings do.
    procedure(commandTable[row].name.data(), [&] {
        endLabelEdit();
        if (const auto bound = m_bound.find(command); bound != m_bound.end())
            bound->second(argument);
        else
            commandTable[row].routine.run(argument);
    });
    if (commandTable[row].farReaching || extent.isOfSeveral())
        extent.tell();
    if (m_whenDone)
        m_whenDone();
}
