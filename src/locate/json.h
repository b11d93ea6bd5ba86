#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace locate {

// The text as a string of JSON in ASCII, in quotes.
void appendJsonText(QByteArray& json, const QString& text);

// Appends the digits directly: QByteArray::number() would allocate a text for each number.
void appendNumber(QByteArray& json, qint64 number);

// An object of JSON that is being written at the end of a text. Its destructor closes it.
class JsonObject
{
public:
    explicit JsonObject(QByteArray& text)
        : json(text)
    {
        json += '{';
    }
    ~JsonObject() { json += '}'; }
    Q_DISABLE_COPY(JsonObject)

    // Begins the field: the value is to be appended to the text. The key is ASCII without quotes.
    QByteArray& field(const char* key);

    void add(const char* key, qint64 number) { appendNumber(field(key), number); }
    void add(const char* key, const char* ascii) { field(key).append('"').append(ascii).append('"'); }
    // Adds nothing if the text is empty. A text beyond 1000 characters is cut and ends in an ellipsis.
    void addUnlessEmpty(const char* key, const QString& text);

private:
    QByteArray& json;
    bool isEmpty = true;
};

} // namespace locate
