# SPDX-License-Identifier: Apache-2.0
"""Every message that the daemon handles as a method, for panels that wait and for those that are awaited."""

from typing import Any, Callable, Generic, Optional, TypeVar

from .catalogue import MESSAGES
from .checks import whole_number
from .encoder import encode, text_bytes
from .pictures.sources import PictureSource, screen_picture

Result = TypeVar("Result", covariant=True)
Method = TypeVar("Method", bound=Callable[..., Any])

_BLINKING = -1
_LONGEST_PHASE = 2**31 - 1  # milliseconds


def sends(name: str) -> Callable[[Method], Method]:
    """Gives a method the meaning of its message and of the fields, from the catalogue."""

    def document(method: Method) -> Method:
        message = MESSAGES[name]
        lines = [f"{name}: {message.meaning}.", "", method.__doc__ or "", ""]
        lines += [f"  {field.parameter}: {field.meaning}" for field in message.fields[1:]]
        if message.counted:
            lines.append(f"  {message.counted}: {message.counted_meaning}")
        method.__doc__ = "\n".join(lines).rstrip()
        setattr(method, "message", name)
        return method

    return document


class Commands(Generic[Result]):
    """The methods. Each checks its values first: a ValueError names the field and its range, and nothing is sent."""

    def _send(self, frame: bytes) -> Result:
        raise NotImplementedError

    @sends("BMS_TFTTextLine")
    def text(self, screen_id: int, line_id: int, text: str, *, flag: int = 1) -> Result:
        """The whole line is drawn anew, the rest of it blank."""
        return self._send(
            encode("BMS_TFTTextLine", text_bytes(text), screen_id=screen_id, line_id=line_id, flag=flag)
        )

    @sends("BMS_TFTSubTextLine")
    def sub_text(
        self,
        screen_id: int,
        line_id: int,
        offset: int,
        text: str,
        *,
        num_chars: Optional[int] = None,
        text_colour: int = 0xFFFFFF,
        back_colour: int = 0x000000,
    ) -> Result:
        """Without num_chars, as many characters as the text has."""
        return self._send(
            encode(
                "BMS_TFTSubTextLine",
                text_bytes(text),
                screen_id=screen_id,
                line_id=line_id,
                offset=offset,
                num_chars=len(text) if num_chars is None else num_chars,
                text_colour=text_colour,
                back_colour=back_colour,
            )
        )

    @sends("BMS_DrawTFTImage")
    def image(
        self, screen_id: int, image: PictureSource, xoffset: int = 0, yoffset: int = 0, *, fit: Optional[str] = None
    ) -> Result:
        """Draws the bytes of a BMP file, the file of a path, a Bitmap, or a picture of PIL.

        `fit` is "crop" to cut off what sticks out of the screen, or "shrink" to make the picture smaller until nothing
        does. Without it, such a picture is a ValueError: the panel would shear it. A BMP of 24 bits that the panel does
        not read goes out as one that it reads. With "unchecked", the bytes go out as they are, to test what then happens.
        """
        picture, x, y = screen_picture(image, xoffset, yoffset, fit)
        return self._send(encode("BMS_DrawTFTImage", picture, screen_id=screen_id, xoffset=x, yoffset=y))

    @sends("BMS_BlackoutScreen")
    def blackout(self, screen_id: int = -1) -> Result:
        """Without a screen, all of them."""
        return self._send(encode("BMS_BlackoutScreen", screen_id=screen_id))

    @sends("BMS_SetLEDState")
    def led(self, button_id: int, on: bool = True, *, blink_ms: Optional[int] = None) -> Result:
        """On, off, or blinking with phases of blink_ms milliseconds, 1 or more."""
        if blink_ms is None:
            return self._send(encode("BMS_SetLEDState", button_id=button_id, state=int(bool(on)), time=0))
        if not 1 <= whole_number("blink_ms", blink_ms) <= _LONGEST_PHASE:
            raise ValueError(f"blink_ms: {blink_ms} is out of its range, 1 to {_LONGEST_PHASE}")
        return self._send(encode("BMS_SetLEDState", button_id=button_id, state=_BLINKING, time=blink_ms))

    @sends("BMS_SetLEDStatusIndicator")
    def status(self, button_id: int, on: bool = True) -> Result:
        """On or off."""
        return self._send(encode("BMS_SetLEDStatusIndicator", button_id=button_id, state=int(bool(on))))

    @sends("BMS_SetLEDToggleIndicator")
    def toggle(self, button_id: int, on: bool = True) -> Result:
        """On or off."""
        return self._send(encode("BMS_SetLEDToggleIndicator", button_id=button_id, state=int(bool(on))))

    @sends("BMS_UploadImage")
    def upload(self, image_id: int, image: bytes) -> Result:
        """The daemon keeps the image; nothing is shown."""
        return self._send(encode("BMS_UploadImage", image_id=image_id, image=image))

    @sends("BMS_Reconfig")
    def reconfig(self) -> Result:
        """Sets the brightness of the screens as the file says."""
        return self._send(encode("BMS_Reconfig"))

    @sends("TYPE_NULL_MESSAGE")
    def null_message(self) -> Result:
        """For a look at the daemon's log."""
        return self._send(encode("TYPE_NULL_MESSAGE"))
