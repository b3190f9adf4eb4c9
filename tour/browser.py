"""Chromium with one page of the tour's own."""
import json
import subprocess

from harness.reader import accessible_objects
from harness.waiting import wait_until

PAGE = """<!doctype html>
<meta charset="utf-8">
<title>loading</title>
<style>
  body { margin: 0; padding: 16px; display: grid; grid-template: 150px 200px / repeat(3, 1fr); gap: 16px;
         background: #20222c; color: #b9bccb; font: 15px sans-serif; text-align: center }
  img, p { width: 100%; height: 100%; margin: 0; object-fit: cover; border-radius: 10px; line-height: 150px;
           background: #2d303d }
  section { grid-column: 1 / 4; border: 2px dashed #596080; border-radius: 10px; line-height: 200px }
</style>
<img alt="Local picture" src="PICTURE">
<img alt="Inline picture" src="data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'
  ><rect width='9' height='9' fill='teal'/></svg>">
<p role="button" aria-label="Promise" draggable="true">Promise</p>
<section role="button" aria-label="Drop files here">Drop files here</section>
<a download="Kept text.txt" href="data:text/plain,kept" hidden></a>
<script>
  const say = what => document.title = JSON.stringify(what)
  const place = document.querySelector('section')
  document.querySelector('p').addEventListener('dragstart', event =>
    event.dataTransfer.setData('DownloadURL', 'text/plain:Promise.txt:data:text/plain,promise'))
  addEventListener('dragend', event => say({ ended: event.target.alt || event.target.ariaLabel }))
  place.addEventListener('dragover', event => {
    event.preventDefault()
    event.dataTransfer.dropEffect = 'copy'
    say({ over: true })
  })
  place.addEventListener('drop', async event => {
    event.preventDefault()
    const files = [...event.dataTransfer.files]
    const read = files.map(async file => [file.name, (await file.arrayBuffer()).byteLength])
    place.textContent = files.map(file => file.name).join(', ')
    say({ dropped: await Promise.all(read) })
  })
  addEventListener('load', () => { document.querySelector('a').click(); say({ ready: true }) })
</script>
"""


class Browser:
    def __init__(self, desktop, picture, place):
        """`place` is x, y, width and height of its window; the page shows the picture, a file."""
        self.desktop = desktop
        page = desktop.folder / "page.html"
        page.write_text(PAGE.replace("PICTURE", picture.as_uri()))
        x, y, width, height = place
        desktop.spawn("chromium", ["env", "ACCESSIBILITY_ENABLED=1", "chromium", "--no-sandbox", "--test-type",
                                   "--no-first-run", "--disable-gpu", "--force-renderer-accessibility",
                                   f"--user-data-dir={desktop.folder / 'chromium'}", f"--window-position={x},{y}",
                                   f"--window-size={width},{height}", page.as_uri()])
        self.wait(ready=True)

    def has_said(self, **what):
        """Whether the page's title says this now."""
        return json.dumps(what, separators=(",", ":")) in self.titles()

    def wait(self, **what):
        wait_until(lambda: self.has_said(**what), f"the page says {what}, not {self.titles()}", 30)

    def titles(self):
        return subprocess.run(["wmctrl", "-l"], env=self.desktop.environment, capture_output=True, text=True).stdout

    def middle_of(self, role, name):
        """Where the object is on the screen."""
        def shown():
            return accessible_objects(self.desktop, "Chromium").get((role, name))

        x, y, width, height = wait_until(shown, f"{role} {name} is shown", 30)["extents"]
        return x + width // 2, y + height // 2

    def show_downloads(self):
        self.desktop.key("ctrl+j")
        wait_until(lambda: "Download" in self.titles(), "the downloads are shown", 30)
