"""The client of the workspace service's XML web API."""
from ._asynchronous import AsyncClient
from ._client import Client, Exchange, dispatch_pending_messages, message_loop_fd, set_log, version, xml_text
from ._errors import Cancelled, DeadlinePassed, NetworkError, NotSent, WapiError
from ._records import *  # noqa: F403
from ._records import VERSION as __version__
