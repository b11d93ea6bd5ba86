#pragma once

#include <QtCore/QString>

#include <cstddef>

namespace proxy {

// A word of a command and its meaning.
template <class Value>
struct Word
{
    const char* text;
    Value value;
};

// The value that the text stands for, exactly and case-sensitively; null when the table does not have it.
template <class Value, std::size_t size>
const Value* valueOf(const Word<Value> (&words)[size], const QString& text)
{
    for (const Word<Value>& word : words) {
        if (text == QLatin1String(word.text))
            return &word.value;
    }
    return nullptr;
}

} // namespace proxy
