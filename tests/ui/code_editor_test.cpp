#include "ui/grid/code_editor.h"

#include <QApplication>
#include <QTest>

#include <Qsci/qscilexer.h>
#include <gtest/gtest.h>

#include "ui/theme.h"

namespace rowvane {
namespace {

TEST(CodeLanguage, IsKnownByItsFirstLines) {
  const std::pair<const char*, CodeLanguage> samples[] = {
      {"", CodeLanguage::kNone},
      {"Call them on Monday; ask for Anna.", CodeLanguage::kNone},
      {"#!/usr/bin/env python3\nx = 1", CodeLanguage::kPython},
      {"import os\n\nprint(os.name)", CodeLanguage::kPython},
      {"total = 0\nfor row in rows:\n    total += row", CodeLanguage::kPython},
      {"#!/bin/sh\nls", CodeLanguage::kBash},
      {"for f in *.txt; do\n  echo $f\ndone", CodeLanguage::kBash},
      {"-- yearly\nSELECT a FROM b WHERE c = 1", CodeLanguage::kSql},
      {"create table t (a integer)", CodeLanguage::kSql},
      {"{\"a\": [1, 2]}", CodeLanguage::kJson},
      {"[\n  {\"a\": 1}\n]", CodeLanguage::kJson},
      {"<?xml version=\"1.0\"?><a/>", CodeLanguage::kXml},
      {"<!DOCTYPE html>\n<html></html>", CodeLanguage::kHtml},
      {"<p>text</p>", CodeLanguage::kHtml},
      {"#include <vector>\nint main() {}", CodeLanguage::kCpp},
      {"void f() {\n}", CodeLanguage::kCpp},
      {"function add(a, b) { return a + b; }", CodeLanguage::kJavaScript},
      {"const sum = list.reduce((a, b) => a + b);", CodeLanguage::kJavaScript},
      {"p.note {\n  color: red;\n}", CodeLanguage::kCss},
  };
  for (const auto& [code, language] : samples) EXPECT_EQ(guess_code_language(code), language) << code;
}

TEST(CodeEditorTest, ColoursFollowWhatIsTypedAndTheGround) {
  for (const bool dark : {false, true}) {
    set_dark_colors(dark);
    QWidget window;
    CodeEditor editor(window.font(), &window);
    EXPECT_EQ(editor.lexer(), nullptr);
    QTest::keyClicks(&editor, "select 1");
    ASSERT_NE(editor.lexer(), nullptr);
    EXPECT_STREQ(editor.lexer()->language(), "SQL");
    const QColor ground = window.palette().color(QPalette::Base);
    for (int style = 0; style < 128; ++style) {
      if (editor.lexer()->description(style).isEmpty()) continue;
      EXPECT_EQ(editor.lexer()->paper(style), ground);
      EXPECT_GT(std::abs(editor.lexer()->color(style).lightness() - ground.lightness()), 80) << style;
    }
    editor.set_code("{\"a\": 1}");
    EXPECT_STREQ(editor.lexer()->language(), "JSON");
    editor.set_code("plain words");
    EXPECT_EQ(editor.lexer(), nullptr);
    EXPECT_FALSE(editor.isUndoAvailable());
  }
  set_dark_colors(false);
}

}  // namespace
}  // namespace rowvane
