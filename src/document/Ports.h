// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class Document;
class Entry;
class FileWitness;
struct Outline;

// What the core asks of the program around it. The program registers an implementation of each port at start-up; tests
// register scripted ones.

// The open document windows.
class DocumentWindows
{
public:
    virtual ~DocumentWindows() = default;
    // Opens a document window, which becomes the active one, for an outline; for null, one without entries.
    virtual Document &createDocument(std::unique_ptr<Outline> outline = nullptr) = 0;
    // The document of the active window, or null.
    virtual Document *activeDocument() const = 0;
    // Every open document, in the order in which the windows were opened.
    virtual std::vector<Document *> documents() const = 0;
    // Closes the main window, and with it every document window in turn.
    virtual void closeMainWindow() = 0;
    // Says something that concerns no open document, as long as none is active.
    virtual void say(const QString &text) = 0;
};

enum class Answer { Yes, No, Cancel };

// A pattern of a file dialog, such as "Text Files (*.txt)" and "*.txt".
struct FileFilter {
    QString description;
    QString pattern;
};

struct FileDialogRequest {
    std::vector<FileFilter> filters;
    // Appended to a name typed without an extension; without the stop.
    QString defaultExtension;
    QString initialName;
    // A name to be written under the filter of this extension gets it even when it has a stop, unless it ends in an
    // extension of one of the filters. Empty for none.
    QString formatExtension = {};
};

// A font as its dialog shows and answers it. What is absent is not known, or was not chosen.
struct FontAttributes {
    std::optional<QString> name;
    // In points.
    std::optional<double> size;
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<bool> strikeThrough;
    // An invalid colour is the automatic one.
    std::optional<QColor> colour;

    bool operator==(const FontAttributes &) const = default;
};

struct FontDialogRequest {
    FontAttributes initial;
    // Whether underline, strike-through and colour are offered too; else they are answered as they came.
    bool effects = false;
};

// Message boxes and common dialogs. Message boxes are titled with the application's title.
class Dialogs
{
public:
    virtual ~Dialogs() = default;
    // A question with Yes, No and Cancel and the question icon.
    virtual Answer ask(const QString &question) = 0;
    // The same without an icon, and with the button that Return presses.
    virtual Answer askPlainly(const QString &question, Answer preset) = 0;
    // A notice with an OK button and the information icon.
    virtual void inform(const QString &text) = 0;
    // The same without an icon.
    virtual void informPlainly(const QString &text) = 0;
    // A warning with an OK button and the exclamation icon.
    virtual void warn(const QString &text) = 0;
    // An existing file to read, or a file to write (asking before it overwrites one); nothing when cancelled.
    virtual std::optional<QString> askOpenName(const FileDialogRequest &request) = 0;
    virtual std::optional<QString> askSaveName(const FileDialogRequest &request) = 0;
    // A font; nothing when cancelled.
    virtual std::optional<FontAttributes> askFont(const FontDialogRequest &request) = 0;
};

// The screen's mouse pointer.
class MousePointer
{
public:
    virtual ~MousePointer() = default;
    virtual void setHourglass(bool hourglass) = 0;
};

// The list of recent files.
class RecentFiles
{
public:
    virtual ~RecentFiles() = default;
    // Moves a file to the top of the list, or removes it.
    virtual void UpdateMRUFile(const QString &sFile, bool bRemove) = 0;
    // The caption of the menu item of a 1-based place in the list, such as "&1 /home/me/notes.qly".
    virtual QString itemCaption(int iIndex) const = 0;
};

// The desktop's clipboard, which holds plain text, rich text (RTF), a picture, several of them or none. Setting one
// removes the others.
class Clipboard
{
public:
    virtual ~Clipboard() = default;
    virtual void clear() = 0;
    // Line breaks are CR LF; empty when there is none.
    virtual QString text() const = 0;
    virtual void setText(const QString &text) = 0;
    virtual QByteArray richText() const = 0;
    virtual void setRichText(const QByteArray &rtf) = 0;
    // A picture's file; empty when there is none.
    virtual QByteArray picture() const = 0;
};

class Clock
{
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

// What is printed of a document: an entry, alone or with its descendants. Both live as long as the printing does.
struct PrintExtent {
    Document *document = nullptr;
    const Entry *top = nullptr;
    bool bDescendants = false;
};

// The printer, and the window that shows beforehand what it would print. Each returns when the user is done with it.
class Printing
{
public:
    virtual ~Printing() = default;
    // Asks for a printer and prints.
    virtual void print(const PrintExtent &extent) = 0;
    virtual void preview(const PrintExtent &extent) = 0;
    // Asks which printer and paper the next printing is for.
    virtual void setUp() = 0;
};

struct Ports {
    DocumentWindows *windows = nullptr;
    Dialogs *dialogs = nullptr;
    MousePointer *pointer = nullptr;
    RecentFiles *recentFiles = nullptr;
    Clipboard *clipboard = nullptr;
    const Clock *clock = nullptr;
    Printing *printing = nullptr;
    FileWitness *files = nullptr;
};

// The registered ports; every one must be set before the first document is opened.
Ports &ports();

// The active document, or null when no document window is active.
Document *DocumentActive();

// Who follows what becomes of the files of documents.
FileWitness &followerOfFiles();

// Whether the user answers a question with Yes.
bool userAgrees(const QString &question);
// The same of a question without an icon, where Return may answer something else.
bool userAgrees(const QString &question, Answer preset);

// Has the status bar say something of the active document in passing, or without one of what was asked for.
void sayOfActive(const QString &text);

// Shows the hourglass pointer while it lives.
class HourglassPointer
{
public:
    HourglassPointer();
    ~HourglassPointer();
    HourglassPointer(const HourglassPointer &) = delete;
    HourglassPointer &operator=(const HourglassPointer &) = delete;
};
