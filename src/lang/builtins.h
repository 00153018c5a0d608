// Handlers of the built-in commands. They take no parameters: each reads its
// stage from CommandArgs and reports failures through the error reporter.
#pragma once

void CmdColour();
void CmdEcho();
void CmdEnd();
void CmdExit();
void CmdHelp();
void CmdRem();
void CmdSeed();
void CmdTimer();
void CmdTips();
void CmdVerify();
