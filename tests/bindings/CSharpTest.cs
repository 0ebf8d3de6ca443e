// The source file for C# against the stand-in service: CSharpTest.exe, with the service's address in TEST_SERVICE_URL.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Net;
using System.Net.Sockets;
using System.Reflection;
using System.Runtime.CompilerServices;
using System.Runtime.InteropServices;
using System.Text;
using System.Threading;
using Pvwapi;

static class CSharpTest
{
    const string Strange = "Grüße aus 東京 \U0001F600 <&> \"'";
    static readonly string Url = Environment.GetEnvironmentVariable("TEST_SERVICE_URL");
    static int wrong;

    static void Expect(bool holds, string what)
    {
        if (holds) return;
        ++wrong;
        Console.WriteLine("not so: " + what);
    }

    static T Thrown<T>(Action action) where T : Exception
    {
        try
        {
            action();
        }
        catch (T found)
        {
            if (found.GetType() == typeof(T)) return found;
            throw;
        }
        throw new InvalidOperationException(typeof(T).Name + " was not thrown");
    }

    static Client Anna()
    {
        var client = new Client(Url);
        client.SignIn("anna", "anna-demo-1");
        return client;
    }

    /// The operation address of a server that takes connections and says nothing; of nobody, once it is stopped.
    static string AddressOf(TcpListener server)
    {
        return "http://127.0.0.1:" + ((IPEndPoint)server.LocalEndpoint).Port + "/kznconnect/op.do";
    }

    static TcpListener SilentServer()
    {
        var server = new TcpListener(IPAddress.Loopback, 0);
        server.Start();
        return server;
    }

    static string AddressOfNobody()
    {
        var server = SilentServer();
        string address = AddressOf(server);
        server.Stop();
        return address;
    }

    static void RecordsGoAndCome()
    {
        using (var client = Anna())
        {
            string made = client.CreateSpace("new", new[] { new WorkspaceField { Field = 0, Value = "first" } }, 3, 0);
            client.EditExtWksp(made, Wapi.XmlText(Strange), 1, new WorkspaceField[0]);
            var listed = client.GetWkspList().Spaces.Single(space => space.WorkspaceID == made);
            Expect(listed.WorkspaceName == Strange, "a name comes back as it went");
            Expect(listed.Description == "first" && listed.Role == (int)InviteAs.Admin, "a description, a role");
            var batch = client.GetSpaceBatch(made);
            Expect(batch.Space.Members.Single().UserName == "anna", "lists within records");
            Expect(batch.Invitations.Count == 0 && batch.Access.SetWorkspaceAccess != "", "three outputs");

            client.CreateTab(made, "one", 5);
            var tab = client.GetTabs(made).Single(found => found.Name == "one");
            tab.Name = Strange;
            client.EditTab(made, tab);
            var tabs = client.GetTabs(made);
            tabs.Reverse();
            for (int at = 0; at < tabs.Count; ++at) tabs[at].Position = at;
            client.EditTabOrder(made, tabs);
            var ordered = client.GetTabs(made).OrderBy(found => found.Position).ToList();
            Expect(ordered.Select(found => found.ID).SequenceEqual(tabs.Select(found => found.ID)), "tabs in order");
            Expect(ordered.Any(found => found.Name == Strange), "a tab's name");

            Expect(client.GetRole(new[] { made }).Count == 2, "a list of texts goes in");
            var invited = client.InviteMembers(new[] { new Invitation { WorkspaceID = made, User = "nobody@example.org",
                InviteMethod = "EMAIL", InviteAs = (int)InviteAs.Member } }, "come");
            Expect(invited.Single().User == "nobody@example.org" && invited[0].Status != "", "a list goes and comes");
            client.DeleteWksp(made);
        }
    }

    static void NumbersAndCredentials()
    {
        using (var client = Anna())
        {
            Expect(client.GetPolicyData().CreateWorkspace == 1, "a flag");
            client.GetSessionInfo();
            Expect(client.GetRefreshInterval() == 3000, "a number");
            Expect(client.GetUserLibrariesWithApps(0, 1).SelectMany(library => library.Apps).Any(), "applications");
            string cred = client.CloneSession("");
            Expect(cred != "" && cred != client.GetRootCred(), "a credential of its own");
            client.GetSessionInfo(cred);
            Thrown<WapiException>(() => client.GetSessionInfo("none of mine"));
            var proxied = client.WapiProxyCall("cmd=noSuchCommand", (int)Method.Post, Url, "", 1);
            Expect(!proxied.Succeeded && proxied.Reply.Contains("FAILURE"), "a reply that comes in any case");
        }
    }

    static void Failures()
    {
        using (var client = new Client(Url))
        {
            var refused = Thrown<WapiException>(() => client.SignIn("anna", "wrong"));
            Expect(refused.Reason != "" && refused.ExceptionID.StartsWith("KZN:"), "the service's reason");
            Expect(refused.Message == "Login: " + refused.Reason + " (" + refused.ExceptionID + ")", refused.Message);
            Expect(refused.Response.Contains(refused.ExceptionID), "the whole reply");
            Expect(Thrown<NotSentException>(() => client.DeleteWksp("")).Reason == "", "no reason of another call");
            Expect(Thrown<NotSentException>(() => client.CreateSpace("", new WorkspaceField[0], 3, 0)).Reason != "",
                "the library's reason");
        }
        using (var client = new Client(AddressOfNobody()))
        {
            var alone = Thrown<NetworkException>(() => client.GetSessionInfo());
            Expect(alone.Cause == NetworkCause.Refused && alone.CauseText.Contains("127.0.0.1"), alone.CauseText);
        }
        var closed = Anna();
        closed.Dispose();
        closed.Dispose();
        closed.Cancel();
        foreach (Action action in new Action[] { () => closed.GetSessionInfo(), () => closed.Copy(),
                                                 () => closed.OnTimer(), () => closed.SetDeadline(1) })
            Thrown<ObjectDisposedException>(action);
    }

    static void WhatIsNotSent()
    {
        using (var client = Anna())
        {
            for (int at = 0; at < 2; ++at)
                Expect(Thrown<NotSentException>(() => client.CreateSpace("", new WorkspaceField[0], 3, 0)).Reason != "",
                    "the same refusal has its reason each time");
            Expect(Thrown<NotSentException>(() => client.DeleteWksp("")).Reason == "", "nor that of a refusal");
        }
        using (var client = new Client("nowhere"))
        {
            foreach (Action action in new Action[] { () => client.GetSessionInfo(), () => client.GetPolicyData(),
                                                     () => client.GetSessionInfo() })
                Expect(Thrown<NetworkException>(action).Cause == NetworkCause.BadAddress, "a bad address");
            Thrown<NotSentException>(() => client.CreateSpace("", new WorkspaceField[0], 3, 0));
        }
        using (var client = new Client(AddressOfNobody()))
        {
            Thrown<NetworkException>(() => client.GetSessionInfo());
            Expect(Thrown<NotSentException>(() => client.DeleteWksp("")).Reason == "", "nor that of a network error");
        }
    }

    [DllImport("pvwapi_c", CallingConvention = CallingConvention.Cdecl)]
    static extern int pvw_on_timer(IntPtr client, uint timerID);

    [MethodImpl(MethodImplOptions.NoInlining)]
    static IntPtr Forgotten(Action<bool> listener)
    {
        var client = Anna();
        client.OnRefresh(listener);
        return (IntPtr)typeof(Client).GetField("client", BindingFlags.NonPublic | BindingFlags.Instance)
            .GetValue(client);
    }

    static void AClientThatNobodyDisposesOf()
    {
        int told = 0;
        var handles = new List<IntPtr>();
        var making = new Thread(() =>
        {
            for (int at = 0; at < 50; ++at) handles.Add(Forgotten(done => ++told));
        });
        making.Start();
        making.Join();
        for (int at = 0; at < 3; ++at)
        {
            GC.Collect();
            GC.WaitForPendingFinalizers();
        }
        foreach (IntPtr handle in handles) Expect(pvw_on_timer(handle, 1) == 1, "a tick");
        Expect(told == handles.Count, "its timer ticks on, and is heard of");
    }

    static void Stopping()
    {
        var server = SilentServer();
        using (var client = new Client(AddressOf(server)))
        {
            client.SetDeadline(50);
            Thrown<DeadlineException>(() => client.GetSessionInfo());
            client.SetDeadline(0);
            var begun = new ManualResetEvent(false);
            client.OnExchange(exchange => begun.Set());
            var ending = new Thread(() =>
            {
                begun.WaitOne();
                Thread.Sleep(50);
                client.Cancel();
            });
            ending.Start();
            Thrown<CancelledException>(() => client.GetSessionInfo());
            ending.Join();
        }
        server.Stop();
    }

    static void Listeners()
    {
        string picture = Path.GetTempFileName();
        File.WriteAllBytes(picture, new byte[5000]);
        using (var client = Anna())
        {
            var seen = new List<Exchange>();
            client.OnExchange(exchange =>
            {
                seen.Add(exchange);
                return true;
            });
            client.GetSessionInfo();
            Expect(seen.Count == 2 && seen[0].Status == 0 && seen[1].Status == 200, "an exchange is told twice");
            Expect(seen[0].Url == Url && seen[0].Method == Method.Post && seen[0].Headers.Count > 0, "where it goes");
            Expect(Encoding.UTF8.GetString(seen[0].Body).Contains("sessionInfo"), "its body");
            Expect(Encoding.UTF8.GetString(seen[1].Reply).Contains("SUCCESS"), "its reply");
            client.OnExchange(exchange => throw new KeyNotFoundException());
            Thrown<KeyNotFoundException>(() => client.GetSessionInfo());
            client.OnExchange(null);

            ulong most = 0;
            string own = client.GetWkspList().Spaces.First(space => space.Role == (int)InviteAs.Admin).WorkspaceID;
            client.OnTransferProgress((done, whole) => (most = done) >= 0);
            client.SetSpaceIcon(own, picture);
            Expect(most >= 5000, "progress");

            var told = new List<bool>();
            client.OnRefresh(told.Add);
            client.OnTimer();
            using (var copy = client.Copy())
            {
                copy.OnTimer();
                Expect(copy.GetRootCred() == client.GetRootCred(), "a copy has the credential");
            }
            Expect(told.SequenceEqual(new[] { true, true }), "refreshes are told, also of a copy");
        }
        File.Delete(picture);
    }

    static void TheLibrary()
    {
        Expect(Wapi.Version == Environment.GetEnvironmentVariable("PVWAPI_VERSION"), "the version is " + Wapi.Version);
        Expect(Wapi.XmlText("a<b>&c") == "a&lt;b&gt;&amp;c", "text for XML");
        Expect(Wapi.DispatchPendingMessages() >= 0 && Wapi.MessageLoopFd >= 0, "the message loop");
        Wapi.SetLog(4);
        int operations = typeof(Client).GetMethods(BindingFlags.Public | BindingFlags.Instance).Length;
        Expect(operations > 70, operations + " methods");
    }

    static int Main()
    {
        Console.OutputEncoding = new UTF8Encoding(false);
        foreach (Action test in new Action[] { RecordsGoAndCome, NumbersAndCredentials, Failures, WhatIsNotSent,
                                               AClientThatNobodyDisposesOf, Stopping, Listeners,
                                               TheLibrary })
        {
            Console.WriteLine(test.Method.Name);
            test();
        }
        Console.WriteLine(wrong == 0 ? "all good" : wrong + " wrong");
        return wrong == 0 ? 0 : 1;
    }
}
