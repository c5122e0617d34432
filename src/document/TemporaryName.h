// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

// The name of a file that exists while another one is saved. It tells how far the saving is, so that what a killed save
// leaves can be judged by its name alone.
struct TemporaryName {
    enum Stage {
        Part,   // being written
        Whole,  // written, and on disk
        Old,    // the replaced content on its way to the backup
        Over,   // whole content that is being written over the file in place
        Before, // what the file held before that
    };

    Stage stage = Part;
    // What makes the name unlike any other; always of the same length.
    QByteArray unique = "XXXXXX";
    // The name of the file being saved, cut off where it is very long.
    QByteArray file;

    QByteArray text() const;
    static std::optional<TemporaryName> parse(const QByteArray &name);
    // As much of a file's name as a temporary name carries.
    static QByteArray carried(const QByteArray &fileName);

    static constexpr qsizetype longestFile = 100;
};
