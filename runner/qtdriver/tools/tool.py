"""A tool: its description for models, and the check of its arguments."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any, Callable, Dict, List, Mapping, Tuple

from .answers import Answer
from .call import Call
from .session import Session

Schema = Dict[str, Any]
Arguments = Mapping[str, Any]
Run = Callable[[Session, Call, Arguments], Answer]

_TYPES: Dict[str, Tuple[type, ...]] = {
    "string": (str,),
    "integer": (int,),
    "number": (int, float),
    "boolean": (bool,),
    "array": (list,),
}

APP: Schema = {
    "type": "string",
    "description": "The application, if several run.",
}
WINDOW: Schema = {
    "type": ["integer", "string"],
    "description": "Number or beginning of the title. Default: in front.",
}
TARGET: Schema = {
    "type": ["integer", "string"],
    "description": "Number in brackets of an outline; or exact text, label or object name.",
}


@dataclass(frozen=True)
class Tool:
    """A row of the table of tools.

    Attributes:
        name, title, description: for the model.
        run: does it.
        properties: the schemas of its arguments.
        required: those that it needs.
        reads_only: whether it changes nothing.
        destroys: whether it can end or overwrite something.
    """

    name: str
    title: str
    description: str
    run: Run
    properties: Mapping[str, Schema] = field(default_factory=dict)
    required: Tuple[str, ...] = ()
    reads_only: bool = False
    destroys: bool = False

    def listed(self) -> Dict[str, Any]:
        """The tool as tools/list has it."""
        schema: Schema = {
            "type": "object",
            "properties": dict(self.properties),
            "additionalProperties": False,
        }
        if self.required:
            schema["required"] = list(self.required)
        return {
            "name": self.name,
            "title": self.title,
            "description": self.description,
            "inputSchema": schema,
            "annotations": {
                "readOnlyHint": self.reads_only,
                "destructiveHint": self.destroys,
                "openWorldHint": False,
            },
        }

    def problems(self, arguments: Arguments) -> List[str]:
        """Says what is wrong with arguments; nothing where they are right."""
        known = ", ".join(self.properties) or "none"
        found = [f"{name} is needed" for name in self.required if name not in arguments]
        for name, value in arguments.items():
            if name not in self.properties:
                found.append(f"there is no argument {name!r}; there are: {known}")
            else:
                found += [f"{name} {problem}" for problem in problems_of(self.properties[name], value)]
        return found


def problems_of(schema: Schema, value: object) -> List[str]:
    """Says what is wrong with a value, in words that follow its name. Knows the parts of JSON Schema that the tools use."""
    names = schema["type"] if isinstance(schema.get("type"), list) else [schema["type"]]
    if not any(_is_of_type(value, name) for name in names):
        return [f"has to be {' or '.join(names)}, not {value!r}"]
    if "enum" in schema and value not in schema["enum"]:
        return [f"has to be one of {', '.join(map(repr, schema['enum']))}, not {value!r}"]
    if isinstance(value, (int, float)) and not isinstance(value, bool):
        least, most = schema.get("minimum"), schema.get("maximum")
        if (least is not None and value < least) or (most is not None and value > most):
            return [f"has to be from {least} to {most if most is not None else 'any number'}, not {value!r}"]
    if isinstance(value, list):
        if not schema.get("minItems", 0) <= len(value) <= schema.get("maxItems", 1000):
            return [f"has to have {schema.get('minItems', 0)} to {schema.get('maxItems', 1000)} entries"]
        return [
            f"entry {n}: {words}"
            for n, one in enumerate(value)
            for words in problems_of(schema["items"], one)
        ]
    return []


def _is_of_type(value: object, name: str) -> bool:
    if isinstance(value, bool):
        return name == "boolean"
    return isinstance(value, _TYPES[name])
