// The first steps of a host, in C#: signs in, lists, renames, stops a call, and learns why another one is refused.
using System;
using System.Text;
using Pvwapi;

static class FirstSteps
{
    static void Rename(Client client, ListedSpace space, string name)
    {
        client.EditExtWksp(space.WorkspaceID, Wapi.XmlText(name), 1, new WorkspaceField[0]);
    }

    static void Work(Client client, ListedSpace space)
    {
        Console.Write(space.WorkspaceName);
        if (space.Role == (int)InviteAs.Admin)
        {
            Rename(client, space, "Ideas & plans");
            Console.WriteLine(" was called Ideas & plans for a moment");
            Rename(client, space, space.WorkspaceName);
            return;
        }
        try
        {
            client.DeleteWksp(space.WorkspaceID);
        }
        catch (WapiException refused)
        {
            Console.WriteLine(" cannot be deleted: " + refused.Reason + " (" + refused.ExceptionID + ")");
        }
    }

    static void StopACall(Client client)
    {
        client.OnExchange(exchange =>
        {
            client.Cancel();  // as any other thread may do
            return true;
        });
        try
        {
            client.GetSessionInfo();
        }
        catch (CancelledException)
        {
            Console.WriteLine("a call was stopped");
        }
        client.OnExchange(null);
    }

    static void Main()
    {
        Console.OutputEncoding = new UTF8Encoding(false);
        using (var client = new Client(Environment.GetEnvironmentVariable("PVWAPI_BASE_URL")))
        {
            client.SignIn(Environment.GetEnvironmentVariable("PVWAPI_USER"),
                Environment.GetEnvironmentVariable("PVWAPI_PASSWORD"));
            foreach (var space in client.GetWkspList().Spaces) Work(client, space);
            StopACall(client);
            client.Logout();
        }
    }
}
