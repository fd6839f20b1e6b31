#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests that check_translations.py sees what it is there to see."""

import unittest
from xml.sax.saxutils import escape

import check_translations


def texts(*pairs, kind=""):
    """A file of these (source, translation)s, all of one context."""
    made = "".join(f"<message><source>{escape(source)}</source>"
                   f"<translation{kind}>{escape(translation)}</translation></message>"
                   for source, translation in pairs)
    return f'<TS version="2.1"><context><name>Window</name>{made}</context></TS>'


class CheckTranslations(unittest.TestCase):
    def found(self, before, after=None):
        return list(check_translations.check(before, before if after is None else after))

    def test_what_is_translated_and_fits_is_fine(self):
        self.assertEqual(self.found(texts(("&Open %1...", "%1 ö&ffnen ..."), ("R & D", "F & E"),
                                          ("<b>%1</b>", "<b>%1</b>"))), [])

    def test_a_text_that_is_not_in_the_file_is_found(self):
        self.assertEqual(self.found(texts(), texts(("Open", ""))),
                         ["Window: not translated: 'Open'"])

    def test_a_translation_that_is_empty_or_not_finished_is_found(self):
        for before in (texts(("Open", "")), texts(("Open", "Öffnen"), kind=' type="unfinished"')):
            self.assertEqual(self.found(before), ["Window: not translated: 'Open'"])

    def test_a_text_that_is_gone_from_the_sources_is_found(self):
        self.assertEqual(self.found(texts(("Open", "Öffnen")), texts()),
                         ["Window: no longer in the sources: 'Open'"])

    def test_places_that_are_missing_or_too_many_are_found(self):
        for translation in ("von", "von %1", "von %1 nach %2 %3", "%1 %1"):
            found = self.found(texts(("%1 to %2", translation)))
            self.assertEqual(len(found), 1, translation)
            self.assertIn("other placeholders", found[0])

    def test_an_accelerator_that_is_missing_or_too_much_is_found(self):
        for pair in (("&Open", "Öffnen"), ("Open", "&Öffnen")):
            self.assertIn("an accelerator (&) in one of them only", self.found(texts(pair))[0])

    def test_a_lost_ellipsis_is_found(self):
        self.assertIn("'...' at the end", self.found(texts(("Open...", "Öffnen")))[0])

    def test_a_function_that_hides_texts_is_found(self):
        check = check_translations.check_source
        self.assertEqual(list(check('return QCoreApplication::translate(\n"A", "Text").arg(x);')), [])
        found = list(check('x\nreturn QCoreApplication::translate("A", text);'))
        self.assertEqual(len(found), 1)
        self.assertTrue(found[0].startswith("2: give translate() the text itself"))


if __name__ == "__main__":
    unittest.main()
