// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/LabelRecords.h"

#include "formats/RecordNames.h"

#include "util/AnsiCodec.h"

#include <QStringDecoder>

namespace
{

QByteArray encoded(const QString &label)
{
    return label.toUtf8().toPercentEncoding(" ");
}

// A byte order mark is a character of the label; QString::fromUtf8 would leave it out.
QString decoded(const QByteArray &exact)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(QByteArray::fromPercentEncoding(exact));
}

} // namespace

LabelRecords labelRecords(const QString &label)
{
    QByteArray value = AnsiCodec::fromText(label);
    const qsizetype brace = value.indexOf('}');
    if (brace < 0 && !value.contains('\r') && !value.contains('\n'))
        return {value, QByteArray()};
    // Behind the brace readers look for the next record, and must not find one in the label.
    if (brace >= 0 && value.indexOf(recordNames::opener, brace) >= 0)
        value.truncate(brace);
    return {value, encoded(label)};
}

std::optional<QString> exactLabel(const QByteArray &exact, const QByteArray &value)
{
    const QString label = decoded(exact);
    const LabelRecords records = labelRecords(label);
    const qsizetype brace = records.value.indexOf('}');
    const QByteArrayView read = QByteArrayView(records.value).first(brace < 0 ? records.value.size() : brace);
    if (records.exact != exact || read != value)
        return std::nullopt;
    return label;
}
