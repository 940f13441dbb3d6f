# Run line changes killed at any moment: the header of the log reads after each, with the old run line or the new one.
set -euo pipefail
. cmake/build.sh
need_packages "${base_packages[@]}" python3
build_preset release orvcfg
exec python3 - build/release/bin/orvcfg "${ORV_KILLS:-1000}" <<'PYTHON'
import json, os, random, signal, subprocess, sys, tempfile, time

program, rounds = os.path.abspath(sys.argv[1]), int(sys.argv[2])

def record(kind, payload):
    crc = 0
    for byte in payload:
        crc ^= byte
        for _ in range(8):
            crc = (crc << 1 ^ 7) & 255 if crc & 128 else crc << 1
    return kind.to_bytes(2, "little") + len(payload).to_bytes(2, "little") + payload + bytes([crc])

def header(path):
    out = subprocess.run([program, "log", "header", path, "--json"], capture_output=True, check=True).stdout
    return json.loads(out)[0]

random.seed(7)
folder = tempfile.mkdtemp()
path = os.path.join(folder, "survey.orv")
names = ["A" * 600, "B" * 600]  # long, so that a write has something to be cut in
text = ("[HEADER]\r\nOrvVersion=5\r\nRunlineName=" + names[0] + "\r\nVesselName=Waverly\r\n").encode()
rest = record(9, b"data" * 5000)
with open(path, "wb") as log:
    log.write(record(1, b"x" * 3700) + record(2, text) + rest)
size = os.path.getsize(path)
started = time.monotonic()
subprocess.run([program, "log", "set-runline", path, names[1]], capture_output=True, check=True)
usual = time.monotonic() - started
killed = changed = 0
old = header(path)["runline"]
for _ in range(rounds):
    new = names[0] if old == names[1] else names[1]
    child = subprocess.Popen([program, "log", "set-runline", path, new], stdout=subprocess.DEVNULL)
    time.sleep(random.uniform(0, 1.2 * usual))
    child.send_signal(signal.SIGKILL)
    killed += child.wait() == -signal.SIGKILL
    now = header(path)
    if now["runline"] not in (old, new) or now["vessel"] != "Waverly" or os.path.getsize(path) != size:
        sys.exit("runline-kill: the header reads %r in %s" % (now, path))
    changed += now["runline"] == new
    old = now["runline"]
with open(path, "rb") as log:
    if not log.read().endswith(rest):
        sys.exit("runline-kill: the records behind the header have changed in " + path)
os.remove(path)
os.rmdir(folder)
print("runline-kill: %d of %d changes killed, %d had come through, every header read" % (killed, rounds, changed))
PYTHON
