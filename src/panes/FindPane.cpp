// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/PaneTable.h"

#include "panes/FindEverywhere.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace
{

// Finds and replaces in the labels and texts of one or all documents.
class FindPane final : public Pane
{
public:
    explicit FindPane(const PaneHost &host)
        : m_host(host)
    {
    }

    QString name() const override { return u"Find everywhere"_s; }

    Qt::DockWidgetArea area() const override { return Qt::RightDockWidgetArea; }

    QWidget *makeWidget() override
    {
        m_content = new FindEverywhere(m_host);
        return m_content;
    }

    void follow(Document *active) override
    {
        if (m_content)
            m_content->follow(active);
    }

    bool enter() override
    {
        if (m_content)
            m_content->enter();
        return m_content;
    }

    bool escape() override { return m_content && m_content->escape(); }

private:
    const PaneHost m_host;
    QPointer<FindEverywhere> m_content;
};

} // namespace

std::unique_ptr<Pane> makeFindPane(const PaneHost &host)
{
    return std::make_unique<FindPane>(host);
}
