// A value of a control that reads and writes like a plain variable.
#pragma once

#include <functional>
#include <ostream>
#include <utility>

namespace tessavox {

/// Assigning a value announces a change exactly once, and only when the value really differs. Where
/// the owner has a rule of its own (a range, a handler to run) the assignment goes to that rule,
/// which calls store() for what is to be kept.
template <class T> class Property {
public:
    using Announce = std::function<void()>;
    using Rule = std::function<void(T wanted)>;

    explicit Property(T initial, Announce announce, Rule rule = nullptr)
        : m_value(std::move(initial))
        , m_announce(std::move(announce))
        , m_rule(std::move(rule))
    {
    }
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    Property& operator=(T wanted)
    {
        if (m_rule)
            m_rule(std::move(wanted));
        else
            store(std::move(wanted));
        return *this;
    }

    const T& get() const { return m_value; }
    operator const T&() const { return m_value; }

    /// For the owner's rule: keeps the value and announces it. Returns whether it differed.
    bool store(T value)
    {
        if (value == m_value)
            return false;
        m_value = std::move(value);
        if (m_announce)
            m_announce();
        return true;
    }

    friend bool operator==(const Property& left, const T& right) { return left.m_value == right; }
    friend std::ostream& operator<<(std::ostream& out, const Property& property)
    {
        return out << property.m_value;
    }

private:
    T m_value;
    Announce m_announce;
    Rule m_rule;
};

} // namespace tessavox
