# SPDX-License-Identifier: GPL-3.0-or-later
"""`assemble` in its three ways. Two of them leave something to the author, which the program says;
with that done they assemble too."""

from cases import EXAMPLES, Work, must_assemble, must_not_assemble, require

PARTS = ["complete", "fuselage", "wings_high", "wings_low", "shadow"]
WINGS = ["--flexing-wings", "--fuselage", "fuselage", "--wings-high", "wings_high", "--wings-low",
         "wings_low"]
SHADOW = ["--shadow-optimization", "--shadow", "shadow"]


def assemble(program, work, *options):
    """The notes of the run that name a problem."""
    errors = program.run(work, "assemble", "--complete", "complete", *options)[1]
    return [line for line in errors.splitlines() if line.startswith("Note: ")
            and line.endswith("]")]


def lines_of(work):
    return (work / "complete.asm").read_text().splitlines()


def save(work, lines):
    (work / "complete.asm").write_text("\n".join(lines) + "\n")


def numbered(note):
    """The line that a note is about, from "Note: PATH:LINE: ..."."""
    return int(note.split(":")[2])


def both(program):
    with Work(EXAMPLES / "aircraft-flex") as work:
        notes = assemble(program, work, *WINGS, *SHADOW)
        require(not notes, f"wings and shadow: {notes}")
        must_assemble(work / "complete.asm")


def wings_only(program):
    """The label model_shadow is there twice: the note says to comment two lines out."""
    with Work(EXAMPLES / "aircraft-flex") as work:
        notes = assemble(program, work, *WINGS, "--shadow", "shadow")
        must_not_assemble(work / "complete.asm", "already defined")
        require(len(notes) == 1 and "model_shadow" in notes[0], f"wings only: {notes}")
        lines, at = lines_of(work), numbered(notes[0])
        for n in (at - 1, at):
            lines[n] = "; " + lines[n]
        save(work, lines)
        must_assemble(work / "complete.asm")


def shadow_only(program):
    """The label model_shadow is called and commented out: the note says what to put where."""
    with Work(EXAMPLES / "aircraft-flex") as work:
        notes = assemble(program, work, *SHADOW)
        must_not_assemble(work / "complete.asm", "model_shadow")
        require(len(notes) == 1 and "model_shadow" in notes[0], f"shadow only: {notes}")
        lines = lines_of(work)
        at = next(n for n, line in enumerate(lines) if line.startswith("BGL_END"))
        save(work, lines[:at] + ["model_shadow label BGLCODE", "    include shadow_0.asm"]
             + lines[at:])
        must_assemble(work / "complete.asm")


def lights_of_a_wing(program):
    """Lights processed in a wing's export need an entry that the complete model's dictionary, and
    so the assembled aircraft, lacks."""
    recipe = '[[assign]]\nkind = "Lights"\nLightVariable = "beacnt"\nAircraftFlag = true\n'
    with Work(EXAMPLES / "aircraft-flex") as work:
        complete = (work / "complete.asm").read_text()
        entry = [line for line in complete.splitlines() if "lightStates" in line or "057F0E" in line]
        for line in entry:
            complete = complete.replace(line + "\n", "")
        complete = complete.replace("dd   156", "dd   152")
        (work / "complete.asm").write_text(complete)
        model = (work / "wings_low_0.asm").read_text()
        marked = model.replace("0.588235,  0.000000,0.000000,0.000000,",
                               "0.588235,  1.000000,0.000000,0.000000,")
        marked = marked.replace("MATERIAL 0,0", "MATERIAL 1,0", 1)
        require(marked != model, "nothing was marked")
        (work / "wings_low_0.asm").write_text(marked)
        (work / "wing.toml").write_text(recipe)
        program.process(work, "wings_low", "wing.toml")
        must_assemble(work / "wings_low.asm")
        notes = assemble(program, work, *WINGS, *SHADOW)
        require(len(notes) == 1 and "dict_g_lightStates" in notes[0], f"lights of a wing: {notes}")
        must_not_assemble(work / "complete.asm", "unsupported relocation")
        lines = lines_of(work)
        at = next(n for n, line in enumerate(lines) if line.startswith("param_extension_dictionary_end"))
        save(work, lines[:at] + entry + lines[at:])
        must_assemble(work / "complete.asm")


def run(program):
    both(program)
    wings_only(program)
    shadow_only(program)
    lights_of_a_wing(program)
    return 4
