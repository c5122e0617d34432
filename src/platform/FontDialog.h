// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QDialog>

class ColourBox;
class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// The font dialog. What is not known at first is shown empty, and answered only once it is chosen.
class FontDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit FontDialog(const FontDialogRequest &request, QWidget *parent = nullptr);

    // What the dialog shows now.
    FontAttributes chosen() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeNames(QGridLayout &layout);
    void makeStyles(QGridLayout &layout);
    void makeSizes(QGridLayout &layout);
    void makeEffects(QGridLayout &layout);
    void makeSample(QGridLayout &layout);
    void showInitial();
    void filterNames(const QString &typed);
    std::optional<QString> chosenName() const;
    std::optional<double> chosenSize() const;
    bool isAcceptable() const;
    void showChoice();

    const FontDialogRequest m_request;
    QLineEdit *m_name = nullptr;
    QListWidget *m_names = nullptr;
    QListWidget *m_styles = nullptr;
    QLineEdit *m_size = nullptr;
    QListWidget *m_sizes = nullptr;
    QCheckBox *m_strikeThrough = nullptr;
    QCheckBox *m_underline = nullptr;
    ColourBox *m_colour = nullptr;
    QLabel *m_sample = nullptr;
    QPushButton *m_ok = nullptr;
};
