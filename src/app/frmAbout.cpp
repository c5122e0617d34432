// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmAbout.h"

#include "util/Procedure.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QLabel *addLabel(QVBoxLayout &layout, const QString &name, const QString &text, double sizeFactor)
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * sizeFactor);
    font.setBold(sizeFactor > 1);
    label->setFont(font);
    layout.addWidget(label);
    return label;
}

} // namespace

frmAbout::frmAbout(QWidget *parent, Purpose purpose)
    : QDialog(parent, purpose == Banner ? Qt::SplashScreen : Qt::Dialog)
{
    setObjectName(u"frmAbout"_s);
    setWindowTitle(u"About Quillery"_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(36, 24, 36, 24);
    layout->setSpacing(12);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    constexpr int iconSize = 64;
    auto *picture = new QLabel;
    picture->setObjectName(u"imgIcon"_s);
    picture->setAlignment(Qt::AlignCenter);
    picture->setPixmap(QGuiApplication::windowIcon().pixmap(iconSize));
    layout->addWidget(picture);

    // The title stands between the icon and the buttons of the desktop's frame.
    constexpr int frameButtons = 140;
    layout->addItem(new QSpacerItem(fontMetrics().horizontalAdvance(windowTitle()) + frameButtons -
                                        layout->contentsMargins().left() - layout->contentsMargins().right(),
                                    0));
    addLabel(*layout, u"lblTitle"_s, u"Quillery"_s, 2);
    addLabel(*layout, u"lblSubtitle"_s, u"The Outliner"_s, 1);
    // The systems whose conventions the program keeps, wherever it runs.
    addLabel(*layout, u"lblPlatform"_s, u"Windows 95/98/NT"_s, 1);
    addLabel(*layout, u"lblVersion"_s, u"Version "_s + QGuiApplication::applicationVersion(), 1);

    auto *cmdOK = new QPushButton(u"OK"_s);
    cmdOK->setObjectName(u"cmdOK"_s);
    cmdOK->setDefault(true);
    cmdOK->setVisible(purpose == Box);
    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
    layout->addWidget(cmdOK, 0, Qt::AlignHCenter);
}

void frmAbout::cmdOK_Click()
{
    procedure("frmAbout cmdOK_Click", [this] { accept(); });
}
