"""The first steps of a host, in Python: signs in, lists, renames, stops a call, and learns why another is refused."""
import os

from pvwapi import Cancelled, Client, InviteAs, WapiError, xml_text


def rename(client, space, name):
    client.edit_ext_wksp(space.workspace_id, xml_text(name), change_name=1, fields=[])


def work(client, space):
    if space.role == InviteAs.ADMIN:
        rename(client, space, "Ideas & plans")
        print(space.workspace_name, "was called Ideas & plans for a moment")
        rename(client, space, space.workspace_name)
    else:
        try:
            client.delete_wksp(space.workspace_id)
        except WapiError as refused:
            print(f"{space.workspace_name} cannot be deleted: {refused.reason} ({refused.exception_id})")


def stop_a_call(client):
    def stop(exchange):
        client.cancel()  # as any other thread may do
        return True

    client.on_exchange(stop)
    try:
        client.get_session_info()
    except Cancelled:
        print("a call was stopped")
    client.on_exchange(None)


def main():
    with Client(os.environ["PVWAPI_BASE_URL"]) as client:
        client.sign_in(os.environ["PVWAPI_USER"], os.environ["PVWAPI_PASSWORD"])
        spaces, invitations = client.get_wksp_list()
        for space in spaces:
            work(client, space)
        stop_a_call(client)
        client.logout()


main()
