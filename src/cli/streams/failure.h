#pragma once

// How every part of lxconfig says that something failed: a Result is the value asked for, or a
// Failure that names the file as given and the reason, printed as "lxconfig: FILE: REASON".
// A function that does not know the file (a JSON form, a setting) leaves it empty, and the
// caller that does names it with in().

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace lxconfig {

struct Failure
{
    std::string file;   // the name as given on the command line; empty when not known here
    std::string reason; // "cannot write: No space left on device"

    std::string message() const { return file.empty() ? reason : file + ": " + reason; }
    // The same reason, about the file.
    Failure in(const std::string &path) const { return Failure{path, reason}; }
};

template <typename T> class Result
{
public:
    Result(T value) : m_state(std::move(value)) {}
    Result(Failure failure) : m_state(std::move(failure)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    T &operator*() { return std::get<0>(m_state); }
    const T &operator*() const { return std::get<0>(m_state); }
    T *operator->() { return &std::get<0>(m_state); }
    const T *operator->() const { return &std::get<0>(m_state); }
    const Failure &failure() const { return std::get<1>(m_state); }

private:
    std::variant<T, Failure> m_state;
};

// Done, or why not.
template <> class Result<void>
{
public:
    Result() = default;
    Result(Failure failure) : m_failure(std::move(failure)) {}

    explicit operator bool() const { return !m_failure; }
    const Failure &failure() const { return *m_failure; }

private:
    std::optional<Failure> m_failure;
};

using Done = Result<void>;

} // namespace lxconfig
