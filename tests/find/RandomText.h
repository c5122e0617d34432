// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <random>

// Texts of characters from all over Unicode, the odd ones often: cases that fold in odd ways, marks alone and together,
// syllables that can be taken apart, pairs and halves of surrogates, blanks and controls of all kinds.
class RandomText
{
public:
    explicit RandomText(unsigned seed)
        : m_random(seed)
    {
    }

    int below(int bound) { return int(m_random() % unsigned(bound)); }

    QString text(int most)
    {
        QString made;
        for (int i = below(most + 1); i > 0; --i)
            made += character();
        return made;
    }

    // What is the same to a reader who looks neither at case nor at accents.
    QString anotherForm(const QString &text)
    {
        switch (below(5)) {
        case 0:
            return text.toLower();
        case 1:
            return text.toCaseFolded();
        case 2:
            return text.normalized(QString::NormalizationForm_C);
        case 3:
            return text.normalized(QString::NormalizationForm_D);
        default:
            return text;
        }
    }

private:
    QString character()
    {
        static const char32_t odd[] = {U'I',    U'i',    0x130,   0x131,   U'S',    0x17F,   0xDF,    0x1E9E, U'K',
                                       0x212A,  0xE9,    0x301,   0x308,   0x327,   0x3C3,   0x3C2,   0x3A3,  0x345,
                                       0x1F82,  0xAC00,  0xAC01,  0x1100,  0x1161,  0x11A8,  0xFB01,  0x2126, 0x41F,
                                       0x439,   0x5D0,   0x5B0,   0x627,   0x0BCA,  0x0958,  0x3042,  0x304C, 0x3099,
                                       0x10400, 0x10428, 0x1D15E, 0x1F600, 0xD800,  0xDC00,  0xAD,    0x200B, 0xFEFF,
                                       0xFFFC,  0xFFFD,  0x2028,  0x2029,  0xA0,    0x3000,  U'\t',   U'\r',  U'\n',
                                       U' ',    0,       0xFFFF,  0x2011,  0x1E921, 0x1E943, 0x16E40, 0x3400, 0x20000};
        switch (below(4)) {
        case 0:
            return made(odd[below(int(std::size(odd)))]);
        case 1:
            return made(char32_t(below(0x3000)));
        case 2:
            return made(char32_t(below(0x20000)));
        default:
            return made(U'a' + char32_t(below(4)));
        }
    }

    // Halves of surrogates too, which no conversion makes.
    static QString made(char32_t c)
    {
        if (c < 0x10000)
            return QString(QChar(char16_t(c)));
        return QString::fromUcs4(&c, 1);
    }

    std::mt19937 m_random;
};
