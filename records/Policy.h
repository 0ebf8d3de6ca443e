// What the organisation lets the user do.
#pragma once

/// 1 where a feature is allowed. A reply only ever sets flags: the caller clears the record first.
struct CZelPolicy {
    int AutomaticUpdates = 0;
    int PremiumServices = 0;
    int SecureCollaboration = 0;
    int IMInt = 0;
    int IMExt = 0;
    int DisableIMCatchInt = 0;
    int DisableIMCatchExt = 0;
    int LocalArchive = 0;
    int VoIPInt = 0;
    int VoIPExt = 0;
    int VideoInt = 0;
    int VideoExt = 0;
    int DesktopShareInt = 0;
    int DesktopShareExt = 0;
    int RemoteControlInt = 0;
    int RemoteControlExt = 0;
    int FileTransferInt = 0;
    int FileTransferExt = 0;
    int FileXferVirusScan = 0;
    int HasSpaces = 0;
    int CreateWorkspace = 0;
};
