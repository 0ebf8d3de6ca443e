"""Why a call failed."""
from __future__ import annotations

from ._records import Message, NetworkCause


class WapiError(Exception):
    """A call that the service refused, or that the library did not send.

    reason        the service's, or the library's own; may be empty
    exception_id  the service's exception identifier, such as "KZN:SessionExpired"
    response      the whole reply
    """

    def __init__(self, operation: str, message: Message):
        self.operation = operation
        self.reason = message.reason
        self.exception_id = message.exception_id
        self.response = message.response
        super().__init__(operation, message)  # what a copy is made of, also in another process

    def __str__(self) -> str:
        return (f"{self.operation}: {self.reason or 'failed without a reason'}"
                + (f" ({self.exception_id})" if self.exception_id else ""))


class NotSent(WapiError):
    """The library refused the call, so that nothing was sent."""


class NetworkError(WapiError):
    """No whole reply came: `cause` is one of NetworkCause, `cause_text` the same in the system's words."""

    def __init__(self, operation: str, message: Message, cause: NetworkCause, cause_text: str):
        super().__init__(operation, message)
        self.cause = cause
        self.cause_text = cause_text
        self.args = operation, message, cause, cause_text

    def __str__(self) -> str:
        return f"{self.operation}: {self.cause_text}" if self.cause_text else super().__str__()


class Cancelled(NetworkError):
    """The call was ended by `cancel`, or by a listener."""


class DeadlinePassed(NetworkError):
    """The call took longer than its deadline."""
