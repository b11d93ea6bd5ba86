#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <random>

// Mutates requests section by section, and values in their decoded form: so that more of them get as far as a widget than
// by changing bytes.
class RequestMutator
{
public:
    explicit RequestMutator(unsigned seed)
        : random(seed)
    {
    }

    QByteArray mutated(const QByteArray& input);

private:
    QByteArray newLine();
    QByteArray mutatedLine(const QByteArray& line);
    QByteArray mutatedBytes(const QByteArray& bytes);
    QByteArray oneOf(const QList<QByteArray>& words);
    QByteArray token(const QByteArray& number, int section);
    void locate(QList<QByteArray>& sections);
    int below(int limit);

    std::mt19937 random;
};
