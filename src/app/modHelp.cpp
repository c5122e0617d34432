// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modHelp.h"

#include "app/AppPorts.h"
#include "app/frmAbout.h"
#include "document/Document.h"
#include "document/FileStamp.h"
#include "document/Ports.h"
#include "document/modDoc.h"
#include "search/modSearch.h"
#include "util/Procedure.h"
#include "util/ProgramFiles.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

QString helpFile()
{
    return programFile(u"Help.qly"_s);
}

void showHelpFile(HelpTopic topic)
{
    const AppPorts &app = appPorts();
    Dialogs &dialogs = *ports().dialogs;
    if (app.helpFile.isEmpty()) {
        // Both commands say "Contents".
        dialogs.inform(u"Unable to display Help Contents. There is no Help associated with this project."_s);
        return;
    }
    try {
        app.showHelpFile(app.helpFile, topic);
    } catch (const RunTimeError &error) {
        dialogs.informPlainly(error.description());
    }
}

} // namespace

namespace modHelp
{

void HelpContents()
{
    procedure("modHelp HelpContents", [] {
        if (g_bHelpIsOutline)
            LoadHelpQLYFile();
        else
            showHelpFile(HelpTopic::Contents);
    });
}

void HelpSearch()
{
    procedure("modHelp HelpSearch", [] {
        if (!g_bHelpIsOutline) {
            showHelpFile(HelpTopic::Search);
            return;
        }
        // Without the manual there is nothing to search; any other document that may be open is not meant.
        LoadHelpQLYFile();
        if (const Document *document = DocumentActive(); document && isSameFile(document->m_sFile, helpFile()))
            modSearch::SearchFind();
    });
}

void LoadHelpQLYFile()
{
    procedure("modHelp LoadHelpQLYFile", [] { modDoc::showOrLoad(helpFile()); });
}

void HelpAbout(QWidget *owner)
{
    procedure("modHelp HelpAbout", [&] { frmAbout(owner).exec(); });
}

} // namespace modHelp
