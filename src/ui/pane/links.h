// Links in text fields: web pages, mail addresses and files.
#pragma once

#include <QUrl>
#include <functional>

namespace rowvane {

// What TEXT leads to: an address with a scheme, "www." and other host names, a mail address, or a file,
// beside the database in FOLDER where its path is relative. Invalid when it is none. Schemes that run
// something other than a viewer are refused.
QUrl link_target(const QString& text, const QString& folder);

// Hands a link over to the desktop; false when nothing takes it. Tests put another function in its place.
using OpenLink = std::function<bool(const QUrl&)>;
OpenLink& link_opener();

}  // namespace rowvane
