// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QObject>
#include <QTest>
#include <QWidget>

#include <deque>
#include <functional>

// What a user does with the modal windows that come up while a test waits for an answer: one step each, in their order.
class ModalSteps final : public QObject
{
public:
    using Step = std::function<void(QWidget *)>;

    // What to do with the next window, once it is shown. A step may open another one.
    void next(const Step &step)
    {
        m_steps.push_back(step);
        if (m_steps.size() == 1)
            later(&ModalSteps::work);
    }

    // Closes, after the last step, the windows that did not end by their steps.
    void closeWhatIsLeft() { later(&ModalSteps::closeRest); }

    bool isDone() const { return m_steps.empty(); }

    void clear() { m_steps.clear(); }

private:
    // Queued calls come in the loops of nested windows too, which a timer would not.
    void later(void (ModalSteps::*call)())
    {
        QMetaObject::invokeMethod(
            this, [this, call] { (this->*call)(); }, Qt::QueuedConnection);
    }

    void work()
    {
        if (m_steps.empty())
            return;
        QWidget *window = QApplication::activeModalWidget();
        if (!window) {
            // The next window is not up yet.
            later(&ModalSteps::work);
            return;
        }
        const Step step = m_steps.front();
        m_steps.pop_front();
        if (!m_steps.empty())
            later(&ModalSteps::work);
        step(window);
        // A step that failed must not leave the test waiting for an answer.
        if (QTest::currentTestFailed())
            window->close();
    }

    void closeRest()
    {
        if (!m_steps.empty()) {
            later(&ModalSteps::closeRest);
            return;
        }
        while (QWidget *window = QApplication::activeModalWidget())
            window->close();
    }

    std::deque<Step> m_steps;
};
