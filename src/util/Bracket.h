// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// Puts what happens while it lives between two calls of an object, which must live longer.
template <typename Object, void (Object::*begin)(), void (Object::*end)()>
class Bracket
{
public:
    explicit Bracket(Object &object)
        : m_object(object)
    {
        (m_object.*begin)();
    }

    ~Bracket() { (m_object.*end)(); }

    Bracket(const Bracket &) = delete;
    Bracket &operator=(const Bracket &) = delete;

private:
    Object &m_object;
};
