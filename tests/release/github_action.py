#!/usr/bin/env python3
"""The composite action's steps, taken from action.yml and run with bash as a
runner would, on a scratch repository: only the keymaps changed since the
base are checked, each finding is a workflow annotation, and the step fails
when one is an error.
    github_action.py SOURCE_ROOT TOOL WORK"""
import os
import re
import shutil
import subprocess
import sys

import yaml

root, tool, work = sys.argv[1:4]
shutil.rmtree(work, ignore_errors=True)
repo = os.path.join(work, "repo")
os.makedirs(os.path.join(repo, "keymaps"))
os.makedirs(os.path.join(work, "bin"))
os.makedirs(os.path.join(work, "temp"))
os.symlink(tool, os.path.join(work, "bin", "zuno-keymap"))

with open(os.path.join(root, "action.yml"), encoding="utf-8") as f:
    action = yaml.safe_load(f)
assert action["runs"]["using"] == "composite"
steps = [s for s in action["runs"]["steps"] if "run" in s]
assert steps, "action.yml has no run steps"


def git(*args):
    return subprocess.run(["git", *args], cwd=repo, check=True, capture_output=True,
                          text=True).stdout.strip()


def write(name, text):
    with open(os.path.join(repo, name), "w", encoding="utf-8") as f:
        f.write(text)


with open(os.path.join(root, "examples", "shooter.json"), encoding="utf-8") as f:
    good = f.read()
broken = good.replace('"type": "Fire"', '"type": "Fier"', 1)
git("init", "-q", ".")
git("config", "user.email", "test@example.invalid")
git("config", "user.name", "test")
write("keymaps/good one.json", good)
write("keymaps/old-broken.json", broken)
write("package.json", "{}\n")
git("add", ".")
git("commit", "-qm", "first")
first = git("rev-parse", "HEAD")
write("keymaps/good one.json", good.replace('"walk"', '"run"'))
write("keymaps/broken.json", broken)
git("add", ".")
git("commit", "-qm", "second")
second = git("rev-parse", "HEAD")


def run_action(inputs):
    """Runs the steps as a runner does: inputs and their defaults in the
    steps' env, bash -eo pipefail; returns the status and the output."""
    values = {name: str(declared.get("default", "")) for name, declared in action["inputs"].items()}
    values.update(inputs)
    output = ""
    for step in steps:
        assert step.get("shell") == "bash", "a step runs in bash on every runner"
        env = dict(os.environ, PATH=os.path.join(work, "bin") + os.pathsep + os.environ["PATH"],
                   RUNNER_TEMP=os.path.join(work, "temp"), GITHUB_ACTIONS="true")
        for name, value in step.get("env", {}).items():
            env[name] = re.sub(r"\$\{\{\s*inputs\.([\w-]+)\s*\}\}",
                               lambda m: values[m.group(1)], str(value))
        assert "${{" not in step["run"], "expressions reach the script through env only"
        done = subprocess.run(["bash", "--noprofile", "--norc", "-eo", "pipefail", "-c",
                               step["run"]], cwd=repo, env=env, capture_output=True, text=True)
        output += done.stdout + done.stderr
        if done.returncode != 0:
            return done.returncode, output
    return 0, output


ANNOTATION = "::error file=keymaps/{},line=133,col=21"
# inputs, whether the action fails, files it reports, files it must not
CASES = [
    ({"base": first}, True, ["broken.json"], ["old-broken.json", "good one.json"]),
    ({"base": second}, False, [], ["broken.json"]),
    ({"base": "0" * 40}, True, ["broken.json", "old-broken.json"], ["good one.json"]),
    ({"base": "", "paths": "keymaps/good*.json"}, False, [], ["broken.json"]),
    ({"base": first, "strict": "true", "paths": "keymaps/good*"}, False, [], ["broken.json"]),
]
failed = False
for inputs, fails, reported, absent in CASES:
    status, output = run_action(inputs)
    problems = [f"status {status}"] if (status != 0) != fails else []
    problems += [f"no finding for {n}" for n in reported if ANNOTATION.format(n) not in output]
    problems += [f"a finding for {n}" for n in absent if f"file=keymaps/{n}," in output]
    print(("FAIL " if problems else "ok   ") + str(inputs), "; ".join(problems))
    if problems:
        print(output)
        failed = True
sys.exit(1 if failed else 0)
