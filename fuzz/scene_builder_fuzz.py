"""scene_builder_fuzz.py - fuzz target (atheris): the Python scene builder,
sciray.Scene, driven by arbitrary text. Each line is one call on a scene,
written as Python with literal arguments; array(LIST, DTYPE) makes a numpy
array of that type, and a first line from_text(TEXT) starts from that text:

    render(width=32, height=24, antialias=True)
    light((5, -5, 8), local=True, radius=0.5)
    add_spheres(array([[0, 0, 0], [1, 1, 1]], 'float32'), 0, radius=0.2)

nan and inf are numbers. Lines that are not such calls are skipped. What must hold: every call ends
or raises ValueError or TypeError (the builder's documented errors), never
another exception, a crash or a hang; the scene's text keeps every line a
reader takes (under 512 characters) when it was built by calls alone; and
the scene renders, on an empty band, exactly as its own text does (or
both raise the same SceneError).

    python fuzz/scene_builder_fuzz.py CORPUS... [libFuzzer options]   # fuzz/run.sh does this
"""
import ast
import warnings

import python_target

with python_target.imports(__name__ == "__main__"):
    import numpy as np

    import sciray

CALLS = ("render", "camera", "ambient", "light", "material", "contour_table", "add_spheres", "add_lines",
         "add_mesh")
DTYPES = ("float64", "float32", "float16", "int64", "int32", "int8", "uint8", "uint64", "bool", "complex128",
          "object", "str")
EMPTY_BAND = (1, 2147483647)  # no picture has a row in it
LINE_LIMIT = 512  # the longest line the scene reader takes, with its end


def value(node: ast.expr):
    """A number, string, list or tuple of them (nan and inf among the
    numbers), or array(VALUE, DTYPE) as a numpy array."""
    if isinstance(node, ast.Constant):
        return node.value
    if isinstance(node, (ast.List, ast.Tuple)):
        items = [value(item) for item in node.elts]
        return items if isinstance(node, ast.List) else tuple(items)
    if isinstance(node, ast.UnaryOp) and isinstance(node.op, (ast.USub, ast.UAdd)):
        number = value(node.operand)
        return -number if isinstance(node.op, ast.USub) else +number
    if isinstance(node, ast.Name) and node.id in ("nan", "inf"):
        return float(node.id)
    if isinstance(node, ast.Call) and isinstance(node.func, ast.Name) and node.func.id == "array" \
            and len(node.args) == 2 and value(node.args[1]) in DTYPES:
        return np.array(value(node.args[0]), dtype=value(node.args[1]))
    raise ValueError("not a literal")


def call(line: str):
    """(name, arguments, keywords) of a line that is a call, or None."""
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", SyntaxWarning)  # "1x" and the like, said for every such line
            tree = ast.parse(line.strip(), mode="eval").body
        if not (isinstance(tree, ast.Call) and isinstance(tree.func, ast.Name)):
            return None
        return (tree.func.id, [value(a) for a in tree.args],
                {k.arg: value(k.value) for k in tree.keywords if k.arg is not None})
    except (SyntaxError, ValueError, TypeError, MemoryError, RecursionError, OverflowError):
        return None  # not a call with literal arguments: the harness's own limits


def rendered(scene):
    """What an empty-band render gives: (objects, progress) or the SceneError."""
    try:
        picture = sciray.render(scene, threads=1, band=EMPTY_BAND)
    except sciray.SceneError as error:
        return str(error)
    return picture.objects, picture.progress


def test_one_input(data: bytes) -> None:
    lines = data.decode("utf-8", "replace").splitlines()
    scene, built = sciray.Scene(), True
    for number, line in enumerate(lines):
        found = call(line)
        if found is None:
            continue
        name, arguments, keywords = found
        try:
            if name == "from_text" and number == 0 and arguments and isinstance(arguments[0], str):
                scene, built = sciray.Scene.from_text(arguments[0]), False
            elif name in CALLS:
                getattr(scene, name)(*arguments, **keywords)
        except (ValueError, TypeError):
            pass
    text = scene.text()
    if built:
        longest = max(map(len, text.splitlines(keepends=True)), default=0)
        assert longest < LINE_LIMIT, "a line of %d characters" % longest
    assert rendered(scene) == rendered(sciray.Scene.from_text(text)), "the scene and its text render differently"


if __name__ == "__main__":
    python_target.fuzz(test_one_input)
