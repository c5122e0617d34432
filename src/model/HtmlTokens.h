// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <vector>

// What an element is to the one who lays it out.
enum class HtmlElement { Other, Void, Block, Paragraph, List, Item, Table, TableSection, Row, Cell, LineBreak };

HtmlElement htmlElement(const QString &tagName);

struct HtmlAttribute {
    QString name; // in small letters
    QStringView value;
};

struct HtmlToken {
    enum class Kind { End, Text, StartTag, EndTag, Comment, Raw };

    Kind kind = Kind::End;
    // Of a tag, or of the element whose raw content this is; in small letters.
    QString name;
    // The characters of a text, still with their "&...;", the inside of a comment, or a style sheet or script as it
    // stands, which comes behind its start tag and has no end tag.
    QStringView text;
    std::vector<HtmlAttribute> attributes;

    // The value of an attribute; null when there is none of that name.
    QStringView attribute(QStringView attributeName) const;
};

// Takes HTML apart, from its beginning to its end without ever going back: its cost is the length of the text. It never
// fails: what is no tag is text, and what is cut off is left out.
class HtmlTokens
{
public:
    // The text must outlive the tokens.
    explicit HtmlTokens(QStringView html);

    HtmlToken next();

private:
    bool isTagAt(qsizetype at) const;
    HtmlToken comment();
    HtmlToken tag();
    HtmlToken raw();
    HtmlToken text();
    std::vector<HtmlAttribute> attributes();
    QStringView attributeValue();
    void skipBlanks();
    // What lies before a place, or before the end, which is the next place to read.
    QStringView upTo(qsizetype end);

    QStringView m_html;
    qsizetype m_at = 0;
    // The element whose content is to be taken as it stands; empty in ordinary text.
    QString m_rawName;
};

// The characters that "&...;" stand for. Their names are those that the text document knows.
class HtmlCharacters
{
public:
    // What a text, or the value of an attribute, says.
    QString of(QStringView html);

private:
    QString ofReference(QStringView reference);

    QHash<QString, QString> m_known;
};

// What such a text says: its characters, with a line feed before each block, row and item.
QString plainTextOfHtml(QStringView html);
