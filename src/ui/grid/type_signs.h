// Small signs that tell the types of fields apart, drawn in the colour of texts.
#pragma once

#include <QPainter>

#include "core/table/field.h"

namespace rowvane {

// Whether numbers of FIELD are shown as dates, with or without a time.
bool shows_dates(const Field& field);

void draw_type_sign(QPainter& painter, const QRect& rect, const Field& field, const QColor& color);

// In place of an image that can't be shown.
void draw_broken_image(QPainter& painter, const QRect& rect, const QColor& color);
// In place of a file that is no image, and of an image that is still to be read.
void draw_file_sign(QPainter& painter, const QRect& rect, const QColor& color);

}  // namespace rowvane
