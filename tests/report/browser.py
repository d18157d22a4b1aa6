"""A headless browser for the tests of reports."""

import os
import sys

BROWSER = "/usr/bin/chromium"
DRIVER = "/usr/bin/chromedriver"
NEEDED = "apt-get install --no-install-recommends chromium chromium-driver python3-selenium"

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.options import Options
    from selenium.webdriver.chrome.service import Service
except ImportError:
    sys.exit(f"Selenium is needed here: {NEEDED}")

# Nothing but the files of the test is to be had, and nothing is looked for.
SWITCHES = [
    "--headless=new",
    "--no-sandbox",
    "--disable-gpu",
    "--disable-dev-shm-usage",
    "--disable-background-networking",
    "--disable-component-update",
    "--no-first-run",
    "--host-resolver-rules=MAP * ~NOTFOUND",
    "--force-device-scale-factor=1",
]


def open_browser():
    """The browser; quit() ends it. Its log keeps every error of a page."""
    if not (os.path.exists(BROWSER) and os.path.exists(DRIVER)):
        sys.exit(f"{BROWSER} and {DRIVER} are needed here: {NEEDED}")
    options = Options()
    for switch in SWITCHES:
        options.add_argument(switch)
    options.binary_location = BROWSER
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    browser = webdriver.Chrome(service=Service(DRIVER), options=options)
    browser.set_window_size(1100, 1200)
    return browser


def prefer(browser, scheme):
    """Makes the pages see "light" or "dark" as the colours that the user prefers."""
    features = [{"name": "prefers-color-scheme", "value": scheme}]
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})
