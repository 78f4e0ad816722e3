#include <QApplication>

#include <gtest/gtest.h>

#include "ui/theme.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  rowvane::set_dark_colors(false);
  return RUN_ALL_TESTS();
}
