// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/Format.h"

#include "formats/OutlineDifference.h"
#include "formats/modDocText.h"
#include "formats/modDocV1.h"

#include "util/modString.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

std::span<const Format> formats()
{
    static const std::array table = {
        Format{formatVersion::native, u"qly"_s, u"Quillery Files (*.qly)"_s, u"*.qly"_s, modDocV1::statedVersion,
               modDocV1::read, modDocV1::readInPlace, modDocV1::write, outlineDifference},
        Format{formatVersion::plainText, u"txt"_s, u"Text Files (*.txt)"_s, u"*.txt"_s, nullptr, modDocText::read,
               nullptr, modDocText::write},
    };
    return table;
}

const Format &formatOfVersion(qint16 version)
{
    const auto found = std::ranges::find(formats(), version, &Format::version);
    return found != formats().end() ? *found : formatOfVersion(formatVersion::plainText);
}

const Format &formatOfExtension(const QString &sFile)
{
    const auto found = std::ranges::find(formats(), modString::StringExtension(sFile), &Format::extension);
    return found != formats().end() ? *found : formatOfVersion(formatVersion::plainText);
}

qint16 formatVersionOf(const QString &sFile, const QByteArray &bytes)
{
    for (const Format &format : formats()) {
        if (const auto stated = format.statedVersion ? format.statedVersion(bytes) : std::nullopt)
            return *stated;
    }
    return formatOfExtension(sFile).version;
}
