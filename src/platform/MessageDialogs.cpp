// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/MessageDialogs.h"

#include "platform/BreakableText.h"
#include "platform/FontDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// While it lives an hourglass pointer gives way to the arrow, for a dialog in the middle of a command.
class ArrowWhileAsking
{
public:
    ArrowWhileAsking()
        : m_needed(QApplication::overrideCursor() != nullptr)
    {
        if (m_needed)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }

    ~ArrowWhileAsking()
    {
        if (m_needed)
            QApplication::restoreOverrideCursor();
    }

    ArrowWhileAsking(const ArrowWhileAsking &) = delete;
    ArrowWhileAsking &operator=(const ArrowWhileAsking &) = delete;

private:
    bool m_needed;
};

QString title()
{
    return u"Quillery"_s;
}

// The box is laid out for its text alone; beside the title stand the icon and the buttons of the desktop's frame.
void widenForTitle(QMessageBox &box)
{
    constexpr int frameButtons = 120;
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    if (!grid)
        return;
    QFont font = box.font();
    font.setBold(true);
    const int width = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + frameButtons;
    grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

int showBox(QMessageBox::Icon icon, const QString &text, QMessageBox::StandardButtons buttons,
            QMessageBox::StandardButton preset)
{
    const ArrowWhileAsking arrow;
    QMessageBox box(icon, title(), text, buttons, QApplication::activeWindow());
    // A file name is never markup.
    box.setTextFormat(Qt::PlainText);
    if (auto *label = box.findChild<QLabel *>(u"qt_msgbox_label"_s))
        setBreakableText(*label, text);
    box.setDefaultButton(preset);
    widenForTitle(box);
    return box.exec();
}

QMessageBox::StandardButton buttonOf(Answer answer)
{
    switch (answer) {
    case Answer::Yes:
        return QMessageBox::Yes;
    case Answer::No:
        return QMessageBox::No;
    case Answer::Cancel:
        break;
    }
    return QMessageBox::Cancel;
}

Answer answerTo(QMessageBox::Icon icon, const QString &question, Answer preset)
{
    switch (showBox(icon, question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, buttonOf(preset))) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

// The filter as the file dialog wants it: the description, which is what it shows, and the patterns in parentheses.
QString nameFilter(const FileFilter &filter)
{
    QStringList patterns = filter.pattern.split(u';');
    // Here a name need not have a stop.
    patterns.replaceInStrings(u"*.*"_s, u"*"_s);
    return u"%1 (%2)"_s.arg(filter.description, patterns.join(u' '));
}

void prepare(QFileDialog &dialog, const FileDialogRequest &request)
{
    QStringList filters;
    for (const FileFilter &filter : request.filters)
        filters.append(nameFilter(filter));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    if (request.initialName.isEmpty())
        return;
    const QFileInfo initial(request.initialName);
    if (initial.isAbsolute())
        dialog.setDirectory(initial.absolutePath());
    dialog.selectFile(initial.isAbsolute() ? initial.fileName() : request.initialName);
}

// What a pattern such as "*.txt" makes of a name: "txt"; nothing for "*.*".
QString extensionOf(const QString &pattern)
{
    const QString first = pattern.section(u';', 0, 0).trimmed();
    const QString extension = first.section(u'.', -1);
    return first.contains(u'.') && !extension.contains(u'*') && !extension.contains(u'?') ? extension : QString();
}

bool endsIn(const QString &name, const FileFilter &filter)
{
    const QString fileName = QFileInfo(name).fileName();
    const QStringList patterns = filter.pattern.split(u';');
    return std::any_of(patterns.cbegin(), patterns.cend(), [&fileName](const QString &pattern) {
        const QString extension = extensionOf(pattern);
        return !extension.isEmpty() && fileName.size() > extension.size() + 1 &&
               fileName.endsWith(u'.' + extension, Qt::CaseInsensitive);
    });
}

QString withExtension(QString name, const QString &chosenFilter, const FileDialogRequest &request)
{
    if (std::any_of(request.filters.cbegin(), request.filters.cend(),
                    [&name](const FileFilter &filter) { return endsIn(name, filter); }))
        return name;
    const auto chosen =
        std::find_if(request.filters.cbegin(), request.filters.cend(),
                     [&chosenFilter](const FileFilter &filter) { return chosenFilter.startsWith(filter.description); });
    QString extension = chosen == request.filters.cend() ? QString() : extensionOf(chosen->pattern);
    // A stop in a name need not begin an extension, and what the documents' own filter is chosen for is a document.
    if ((extension.isEmpty() || extension != request.formatExtension) && !QFileInfo(name).suffix().isEmpty())
        return name;
    if (extension.isEmpty())
        extension = request.defaultExtension;
    if (name.endsWith(u'.'))
        name.chop(1);
    return extension.isEmpty() ? name : name + u'.' + extension;
}

// Finds a file whose name is typed without its extension.
class OpenDialog final : public QFileDialog
{
public:
    OpenDialog(const QString &folder, const QString &extension)
        : QFileDialog(QApplication::activeWindow(), u"Open"_s, folder)
        , m_extension(extension)
    {
    }

protected:
    void accept() override
    {
        auto *field = findChild<QLineEdit *>(u"fileNameEdit"_s);
        if (field && !field->text().isEmpty() && !m_extension.isEmpty()) {
            const QString path = directory().absoluteFilePath(field->text());
            if (!QFileInfo::exists(path) && QFileInfo(path + u'.' + m_extension).isFile())
                field->setText(field->text() + u'.' + m_extension);
        }
        QFileDialog::accept();
    }

private:
    QString m_extension;
};

} // namespace

Answer MessageDialogs::ask(const QString &question)
{
    return answerTo(QMessageBox::Question, question, Answer::Yes);
}

Answer MessageDialogs::askPlainly(const QString &question, Answer preset)
{
    return answerTo(QMessageBox::NoIcon, question, preset);
}

void MessageDialogs::inform(const QString &text)
{
    showBox(QMessageBox::Information, text, QMessageBox::Ok, QMessageBox::Ok);
}

void MessageDialogs::informPlainly(const QString &text)
{
    showBox(QMessageBox::NoIcon, text, QMessageBox::Ok, QMessageBox::Ok);
}

void MessageDialogs::warn(const QString &text)
{
    showBox(QMessageBox::Warning, text, QMessageBox::Ok, QMessageBox::Ok);
}

std::optional<QString> MessageDialogs::askOpenName(const FileDialogRequest &request)
{
    OpenDialog dialog(m_folder, request.defaultExtension);
    dialog.setFileMode(QFileDialog::ExistingFile);
    prepare(dialog, request);
    return chosenName(dialog);
}

std::optional<QString> MessageDialogs::askSaveName(const FileDialogRequest &request)
{
    QFileDialog dialog(QApplication::activeWindow(), u"Save As"_s, m_folder);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The dialog would ask about the name as typed; the file that is at stake is the one with the extension.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    prepare(dialog, request);
    while (const std::optional<QString> typed = chosenName(dialog)) {
        const QString name = withExtension(*typed, dialog.selectedNameFilter(), request);
        const QString folder = QFileInfo(name).absolutePath();
        if (!QFileInfo(folder).isDir()) {
            warn(u"%1\nThis folder does not exist.\nPlease verify the correct path was given."_s.arg(folder));
            continue;
        }
        const QString question = u"%1 already exists.\nDo you want to replace it?"_s.arg(name);
        if (!QFileInfo::exists(name) || showBox(QMessageBox::Warning, question, QMessageBox::Yes | QMessageBox::No,
                                                QMessageBox::No) == QMessageBox::Yes)
            return name;
    }
    return std::nullopt;
}

std::optional<FontAttributes> MessageDialogs::askFont(const FontDialogRequest &request)
{
    const ArrowWhileAsking arrow;
    FontDialog dialog(request, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted ? std::optional(dialog.chosen()) : std::nullopt;
}

std::optional<QString> MessageDialogs::chosenName(QFileDialog &dialog)
{
    const ArrowWhileAsking arrow;
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QString name = dialog.selectedFiles().first();
    if (const QString folder = QFileInfo(name).absolutePath(); QFileInfo(folder).isDir())
        m_folder = folder;
    return name;
}
