// Handlers of the built-in commands. They take no parameters: each reads its
// stage from CommandArgs and reports failures through the error reporter.
#pragma once

void CmdEcho();
void CmdEnd();
void CmdExit();
void CmdHelp();
void CmdLet();
void CmdRem();
void CmdSeed();
void CmdSet();
void CmdTimer();
void CmdTips();
void CmdVerify();
void CmdXset();
