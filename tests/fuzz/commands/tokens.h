#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

// The words of which the mutator makes requests for RichHost.
namespace tokens {

// Words for section 0 (the command's number) to 5 (the option). The values, in the sections 4 and 5, are not encoded.
const QList<QByteArray>& ofSection(int section);

// The same for the extension with that name, with locators in section 2.
const QList<QByteArray>& ofExtensionSection(const QByteArray& name, int section);

// Whole requests that suit what they are about, their values, and all sections of extensions, not encoded.
const QList<QByteArray>& requests();

} // namespace tokens
