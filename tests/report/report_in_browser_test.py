"""Opens reports in a browser and uses them as a reader does.

    report_in_browser_test.py REPORT_WRITER CAPTURES

With REPORT_SCREENSHOTS=FOLDER a picture of what each test saw at its end is kept there.
"""

import base64
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

import browser

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

WRITER, CAPTURES = sys.argv[1:3]


def setUpModule():
    ReportTest.folder = tempfile.TemporaryDirectory()
    subprocess.run([WRITER, CAPTURES, ReportTest.folder.name], check=True)
    ReportTest.browser = browser.open_browser()


def tearDownModule():
    ReportTest.browser.quit()
    ReportTest.folder.cleanup()


class ReportTest(unittest.TestCase):
    def setUp(self):
        browser.prefer(self.browser, "light")
        self.browser.set_window_size(1100, 1200)

    def tearDown(self):
        folder = os.environ.get("REPORT_SCREENSHOTS")
        if folder:
            self.browser.save_screenshot(f"{folder}/{self._testMethodName}.png")
        self.assertEqual(self.errors(), [])

    def errors(self):
        log = self.browser.get_log("browser")
        return [one["message"] for one in log if one["level"] == "SEVERE"]

    def open(self, name):
        self.browser.get(pathlib.Path(self.folder.name, f"{name}.html").as_uri())

    def find(self, selector):
        # What was scrolled is drawn anew with the next frame, and its rows are others then.
        self.next_frame()
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        """What is read there, found and read at once."""
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])]"
            ".map((one) => one.innerText.trim().replace(/\\s+/g, ' '))", selector)

    def text(self, selector):
        first, *_ = self.texts(selector)
        return first

    def rows(self):
        """The rows of the conversation in sight, from the top."""
        return self.browser.execute_script(
            "return [...document.querySelectorAll('#rows .row')]"
            ".sort((a, b) => a.dataset.row - b.dataset.row).map((row) => row.textContent)")

    def run_script(self, text):
        return self.browser.execute_script(text)

    def next_frame(self):
        self.browser.execute_async_script(
            "const done = arguments[0]; requestAnimationFrame(() => requestAnimationFrame(done))")

    def seen(self):
        """First and last time that the timeline shows, in microseconds."""
        return self.run_script("const {from, to} = timeline.view(); return [from, to]")

    def search(self, text):
        field = self.find("#search")
        field.clear()
        field.send_keys(text)


class EveryReport(ReportTest):
    def test_every_report_opens_without_an_error_and_tells_an_outcome(self):
        for file in sorted(pathlib.Path(self.folder.name).glob("*.html")):
            with self.subTest(file.stem):
                self.open(file.stem)
                self.assertRegex(self.text("#outcome"), r"\.$")
                self.assertEqual(self.browser.title, f"{file.stem}: scan report")
                self.assertEqual(self.errors(), [])

    def test_a_report_loads_nothing_else(self):
        self.open("extended-grey")
        loaded = self.run_script(
            "return performance.getEntriesByType('resource').map((one) => one.name)"
            ".filter((name) => !name.startsWith('data:'))")
        self.assertEqual(loaded, [])

    def test_what_a_device_says_is_text_and_nothing_else(self):
        self.open("hostile")
        self.assertEqual(self.browser.title, "hostile: scan report")
        self.assertEqual(len(self.browser.find_elements(By.TAG_NAME, "script")), 2)
        self.assertTrue(any("</script><script>" in row for row in self.rows()))

    def test_pages_are_as_wide_as_a_narrow_window(self):
        self.browser.set_window_size(640, 900)
        for name in ["extended-jam", "long", "hostile"]:
            self.open(name)
            width = self.run_script("return document.documentElement.scrollWidth - innerWidth")
            self.assertLessEqual(width, 0, name)


class Jam(ReportTest):
    def setUp(self):
        super().setUp()
        self.open("extended-jam")

    def test_the_outcome_names_the_fault(self):
        self.assertIn("paper jam", self.text("#outcome"))
        self.assertIn("trouble", self.find("#outcome").get_attribute("class"))

    def test_faults_come_first_and_lead_into_the_conversation(self):
        faults = self.texts("#faults li")
        self.assertEqual(len(faults), 4)
        self.assertIn("block 1 of 2", faults[0])
        self.assertIn("[line 85]", faults[0])
        self.find("#faults li:nth-child(2) button").click()
        current = self.text(".row.current")
        self.assertIn("FS F status", current)
        self.assertIn("!!", current)

    def test_only_faults_leaves_out_what_went_well(self):
        self.find("#only-faults").click()
        rows = self.rows()
        self.assertFalse(any("PMOpenScanner" in row for row in rows))
        self.assertTrue(any("status error (0x80)" in row for row in rows))

    def test_an_exchange_unfolds_to_its_fields_and_bytes(self):
        before = len(self.rows())
        self.run_script("conversation.show(0, 0)")
        self.find("#list").send_keys(Keys.ARROW_RIGHT)
        rows = self.rows()
        self.assertGreater(len(rows), before)
        self.assertTrue(any("write 2 : 1B 49" in row for row in rows))
        self.find("#list").send_keys(Keys.ARROW_LEFT)
        self.assertEqual(len(self.rows()), before)

    def test_calls_fold_and_unfold_by_a_click(self):
        self.find("#close-all").click()
        self.assertEqual(len(self.rows()), 8)
        self.find("#row-0").click()
        self.assertGreater(len(self.rows()), 8)
        self.assertEqual(self.find("#row-0").get_attribute("aria-expanded"), "true")
        self.find("#row-0").click()
        self.assertEqual(len(self.rows()), 8)

    def test_the_keyboard_walks_through_the_conversation(self):
        self.find("#close-all").click()
        conversation = self.find("#list")
        conversation.send_keys(Keys.END)
        self.assertIn("PMCloseScanner", self.text(".row.current"))
        conversation.send_keys(Keys.HOME, Keys.ARROW_DOWN)
        self.assertEqual(conversation.get_attribute("aria-activedescendant"), "row-1")

    def test_search_finds_words_in_any_case(self):
        self.search("PAPER JAM")
        self.assertEqual(self.text("#found"), "1 of 2")
        self.assertIn("FS F status", self.text(".row.current"))
        self.find("#next").click()
        self.assertEqual(self.text("#found"), "2 of 2")
        self.assertIn("PMGetScanError", self.text(".row.current"))
        self.find("#next").click()
        self.assertEqual(self.text("#found"), "1 of 2")

    def test_search_finds_bytes_of_transfers(self):
        self.search("1c 47")
        self.assertEqual(self.text("#found"), "1 of 1")
        self.assertIn("FS G start transfer", self.text(".row.current"))

    def test_search_says_when_there_is_nothing(self):
        self.search("no such words")
        self.assertEqual(self.text("#found"), "not found")

    def test_settings_are_told_with_what_they_were(self):
        settings = self.texts("#settings tbody tr")
        self.assertIn("PMOpenScanner host docFeedOption 0 2", settings)
        self.assertIn("PMOpenScanner module docFeedOption 2 0", settings)

    def test_host_calls_are_counted(self):
        self.assertIn("PMEnableOption 2 0", " | ".join(self.texts("#host-calls tbody tr")))


class Timeline(ReportTest):
    def setUp(self):
        super().setUp()
        self.open("extended-grey")
        self.whole = self.seen()

    def width(self):
        first, last = self.seen()
        return last - first

    def test_buttons_zoom_and_show_all(self):
        all_of_it = self.width()
        self.find("#zoom-in").click()
        self.assertAlmostEqual(self.width(), all_of_it / 2, places=3)
        self.find("#zoom-out").click()
        self.find("#zoom-in").click()
        self.find("#zoom-in").click()
        self.find("#zoom-all").click()
        self.assertEqual(self.seen(), self.whole)

    def test_keys_zoom_and_move(self):
        canvas = self.find("#timeline")
        canvas.send_keys("+", "+", Keys.ARROW_RIGHT)
        first, last = self.seen()
        self.assertAlmostEqual(last - first, self.whole[1] / 4, places=3)
        self.assertGreater(first, self.whole[1] * 3 / 8)
        canvas.send_keys(Keys.HOME)
        self.assertEqual(self.seen(), self.whole)

    def test_the_wheel_zooms_where_the_mouse_is(self):
        self.run_script(
            "byId('timeline').dispatchEvent(new WheelEvent('wheel',"
            "{deltaY: -100, clientX: byId('timeline').getBoundingClientRect().left + 104}))")
        first, last = self.seen()
        self.assertAlmostEqual(first, 0, delta=self.whole[1] / 100)
        self.assertAlmostEqual(last, self.whole[1] * 0.8, delta=self.whole[1] / 100)

    def test_dragging_moves(self):
        canvas = self.find("#timeline")
        canvas.send_keys("+", "+")
        first = self.seen()[0]
        actions = ActionChains(self.browser)
        actions.move_to_element(canvas).click_and_hold().move_by_offset(-150, 0).release().perform()
        self.assertGreater(self.seen()[0], first)

    def test_a_click_leads_into_the_conversation(self):
        self.find("#close-all").click()
        ActionChains(self.browser).move_to_element(self.find("#timeline")).click().perform()
        span = self.run_script("return timeline.spanAt(report.total / 2)")
        told = self.run_script(f"return report.exchangeText(report.exchangeOfSpan({span}))")
        self.assertIn(told.split(",")[0], self.text(".row.current"))

    def test_something_is_drawn_in_every_lane(self):
        self.next_frame()
        drawn = self.run_script(
            "const canvas = byId('timeline'), pen = canvas.getContext('2d');"
            "return Object.fromEntries(Object.entries(timeline.lanes).map(([name, lane]) =>"
            "[name, new Set(new Uint32Array(pen.getImageData(104, lane.top, canvas.width - 112,"
            "lane.height).data.buffer)).size > 1]))")
        self.assertEqual(set(drawn.values()), {True}, drawn)

    def test_without_times_entries_are_counted(self):
        self.open("transfers-only")
        self.assertIn("keeps no times", self.text("#notes"))
        self.assertIn("entry", self.text("#range"))
        self.assertFalse(self.find("#bar").is_displayed())


class Pages(ReportTest):
    def overlay(self):
        """The lines of pixels on which something is laid over the first page."""
        return self.run_script(
            "const canvas = document.querySelector('.sheet canvas');"
            "const {width, height} = canvas;"
            "const data = canvas.getContext('2d').getImageData(0, 0, width, height).data;"
            "const drawn = [];"
            "for (let y = 0; y < height; ++y) if (data[(y * width + 1) * 4 + 3]) drawn.push(y);"
            "return {drawn, height}")

    def test_the_picture_is_the_one_that_came(self):
        self.open("extended-grey")
        self.assertEqual(self.run_script(
            "const image = document.querySelector('.sheet img');"
            "const page = report.data.pages[0];"
            "return [image.naturalWidth === page.width, image.naturalHeight === page.imageLines,"
            "image.complete]"), [True, True, True])

    def test_the_first_line_of_the_picture_has_the_bytes_of_the_first_block(self):
        text = pathlib.Path(CAPTURES, "extended-grey.txt").read_text()
        block = text[re.search(r"read \d+ crc", text).start():]
        line = list(bytes.fromhex(re.search(r"\+ ([0-9A-F]{64})", block).group(1)))
        self.assertGreater(len(set(line)), 2)
        self.open("extended-grey")
        shown = self.run_script(
            "const pen = document.createElement('canvas').getContext('2d');"
            "pen.drawImage(document.querySelector('.sheet img'), 0, 0);"
            "const pixels = pen.getImageData(0, 0, 32, 1).data;"
            "return [...pixels].filter((sample, i) => i % 4 === 0)")
        self.assertEqual(shown, line)

    def test_borders_of_blocks_lie_where_the_blocks_end(self):
        self.open("extended-grey")
        self.find("#show-bands").click()
        self.assertEqual(self.overlay()["drawn"], [])
        self.find("#show-blocks").click()
        overlay = self.overlay()
        blocks = self.run_script("return report.data.pages[0].blocks.map((block) => block[0])")
        lines = self.run_script("return report.data.pages[0].height")
        expected = [sum(blocks[:i]) * overlay["height"] / lines for i in range(1, len(blocks))]
        self.assertGreater(len(expected), 0)
        for border in expected:
            self.assertTrue(any(abs(y - border) <= 1.5 for y in overlay["drawn"]), border)
        self.find("#show-blocks").click()
        self.assertEqual(self.overlay()["drawn"], [])

    def test_a_page_can_be_enlarged(self):
        self.open("extended-grey")
        before = self.find(".sheet").size["width"]
        self.find(".page button").click()
        self.assertGreater(self.find(".sheet").size["width"], before)

    def test_pictures_are_left_out_when_they_are_not_wanted(self):
        self.open("no-pictures")
        self.assertEqual(self.browser.find_elements(By.TAG_NAME, "img"), [])
        self.assertIn("no picture to show", self.text("figcaption"))
        self.find("#show-blocks").click()
        self.assertGreater(len(self.overlay()["drawn"]), 0)


class Long(ReportTest):
    """A conversation of 100,000 transfers."""

    def setUp(self):
        super().setUp()
        self.open("long")

    def test_few_rows_are_in_the_document_however_many_there_are(self):
        self.find("#open-all").click()
        self.assertLess(len(self.rows()), 100)
        self.find("#list").send_keys(Keys.END)
        self.assertIn("returned status failed (2)", self.text(".row.current"))
        self.assertLess(len(self.rows()), 100)

    def test_a_fold_of_bands_unfolds(self):
        fold = self.find(".row.cycle")
        self.assertIn("more like it", fold.text)
        before = self.run_script("return conversation.rows().length")
        fold.click()
        self.assertGreater(self.run_script("return conversation.rows().length"), before + 7000)

    def test_search_goes_to_the_end_and_back(self):
        self.search("block 50001 of")
        self.assertEqual(self.text("#found"), "1 of 1")
        self.assertIn("block 50001 of 50002", self.text(".row.current"))
        self.search("block 77 of")
        self.assertIn("block 77 of 50002", self.text(".row.current"))

    def test_zoom_goes_from_all_of_it_to_a_single_transfer(self):
        self.run_script("for (let i = 0; i < 40; ++i) timeline.zoom(0.5)")
        first, last = self.seen()
        self.assertLess(last - first, 1000)
        self.next_frame()

    def test_the_longest_waits_are_told_and_found(self):
        longest = self.texts("#longest li")
        self.assertEqual(sum(one.startswith("2.001 s") for one in longest), 7)
        self.find("#longest li button").click()
        self.assertIn("after 2.0 s", self.text(".row.current"))

    def test_it_stays_usable(self):
        # Limits far beyond what it takes: they tell work that grows with the square of the rows.
        for act in ["conversation.openAll()", "timeline.draw()", "conversation.show(7000, 49000)",
                    "search.find('status ok')"]:
            begin = time.monotonic()
            self.run_script(act)
            self.assertLess(time.monotonic() - begin, 10, act)


class Colours(ReportTest):
    # WCAG 2: text needs 4.5, what is large or drawn needs 3.
    def contrast(self, ink, ground):
        return self.run_script("""
            const light = (colour) => {
              const [r, g, b] = colour.map((one) => one / 255)
                .map((one) => (one <= 0.03928 ? one / 12.92 : ((one + 0.055) / 1.055) ** 2.4));
              return 0.2126 * r + 0.7152 * g + 0.0722 * b;
            };
            const colour = (name) => {
              const probe = document.createElement('i');
              probe.style.color = `var(--${name})`;
              document.body.append(probe);
              const numbers = getComputedStyle(probe).color.match(/[0-9]+/g).map(Number);
              probe.remove();
              return numbers;
            };
            const [a, b] = [light(colour(arguments[0])), light(colour(arguments[1]))];
            return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);""".replace(
                "arguments[0]", repr(ink)).replace("arguments[1]", repr(ground)))

    def check(self, scheme):
        browser.prefer(self.browser, scheme)
        self.open("extended-jam")
        for ink in ["ink", "quiet", "trouble", "good", "focus"]:
            for ground in ["paper", "ground"]:
                self.assertGreater(self.contrast(ink, ground), 4.5, (scheme, ink, ground))
        self.assertGreater(self.contrast("trouble", "trouble-ground"), 4.5)
        self.assertGreater(self.contrast("ink", "found"), 4.5)
        for i in range(6):
            self.assertGreater(self.contrast(f"activity-{i}", "paper"), 3, (scheme, i))
        return self.run_script("return getComputedStyle(document.body).backgroundColor")

    def test_light_and_dark_can_both_be_read(self):
        self.assertEqual(self.check("light"), "rgb(255, 255, 255)")
        self.assertEqual(self.check("dark"), "rgb(22, 25, 29)")


class Print(ReportTest):
    def printed(self, name):
        """The text of the page on paper."""
        self.open(name)
        paper = base64.b64decode(self.browser.print_page())
        with tempfile.NamedTemporaryFile(suffix=".pdf") as file:
            file.write(paper)
            file.flush()
            done = subprocess.run(["pdftotext", "-layout", file.name, "-"], check=True,
                                  capture_output=True, text=True)
        return done.stdout

    def test_paper_has_the_conversation_and_no_buttons(self):
        text = self.printed("extended-jam")
        self.assertIn("paper jam", text)
        self.assertIn("ESC I level and identity", text)
        self.assertIn("returned no error (0)", text)
        self.assertNotIn("Zoom in", text)
        self.assertNotIn("Search", text)

    def test_behind_the_print_the_page_is_as_before(self):
        self.printed("extended-jam")
        self.assertEqual(self.texts("#printed div"), [])
        self.assertNotIn("printing", self.find("html").get_attribute("class"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
