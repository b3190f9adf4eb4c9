"""Small files of every kind, for the chapters that need some."""
import subprocess

PDF = b"""%PDF-1.4
1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj
2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj
3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 420 594]/Contents 4 0 R>>endobj
4 0 obj<</Length 152>>stream
0.13 0.2 0.25 rg 40 500 240 40 re f 0.85 0.3 0.55 rg 40 250 340 200 re f
0.7 g 40 200 340 12 re f 40 170 300 12 re f 40 140 330 12 re f 40 110 210 12 re f     
endstream endobj
trailer<</Root 1 0 R>>
"""


def make_files(folder):
    """Makes the folder, files in it and two folders; returns their paths."""
    def convert(name, *commands):
        subprocess.run(["convert", *commands, str(folder / name)], check=True)

    def ffmpeg(name, *arguments):
        subprocess.run(["ffmpeg", "-v", "error", *arguments, str(folder / name)], check=True)

    folder.mkdir()
    convert("Night ferry.jpg", "-size", "1200x800", "gradient:#f7b267-#5b2a57", "-fill", "#ffe8b0", "-draw",
            "circle 820,240 920,240", "-fill", "#a8446e", "-draw", "polygon 0,800 400,390 700,800")
    cover = folder / "cover.png"
    convert("cover.png", "-size", "400x400", "gradient:#3fa9f5-#d94f8a")
    ffmpeg("Horn, wide.flac", "-f", "lavfi", "-i", "sine=220:duration=1", "-i", str(cover), "-map", "0", "-map", "1",
           "-disposition:v", "attached_pic")
    cover.unlink()
    ffmpeg("Dawn.mp4", "-f", "lavfi", "-i", "testsrc2=size=480x270:rate=10:duration=1", "-pix_fmt", "yuv420p")
    (folder / "Shot list.pdf").write_bytes(PDF)
    (folder / "Notes.txt").write_text("Rail, quay, horn.\n")
    convert("Poster.png", "-size", "600x800", "gradient:#12333f-#2fa88a", "-fill", "#f7b267", "-draw",
            "circle 300,300 300,420")
    for name in ("Ferry film", "Sound"):
        (folder / name).mkdir()
    return [folder / name for name in ("Night ferry.jpg", "Horn, wide.flac", "Ferry film", "Notes.txt", "Dawn.mp4",
                                       "Shot list.pdf", "Poster.png", "Sound")]
