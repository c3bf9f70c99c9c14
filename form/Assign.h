// Writes a value into a field when it differs; returns whether it changed,
// so that a model reports only real changes to the form's observers.
#pragma once

#include <utility>

namespace kt500::form {

template <typename T>
bool assign(T& field, T value) {
    if (field == value) {
        return false;
    }
    field = std::move(value);
    return true;
}

}  // namespace kt500::form
