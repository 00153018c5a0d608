// Handlers of the built-in commands. They take no parameters: each reads its
// stage from CommandArgs and reports failures through the error reporter.
#pragma once

void CmdCalc();
void CmdCall();
void CmdCallproc();
void CmdColour();
void CmdData();
void CmdEcho();
void CmdEnd();
void CmdEndlocal();
void CmdEndproc();
void CmdExit();
void CmdGosub();
void CmdGoto();
void CmdHelp();
void CmdIf();
void CmdProc();
void CmdPrompt();
void CmdRead();
void CmdRem();
void CmdReturn();
void CmdSeed();
void CmdSetlocal();
void CmdShift();
void CmdStop();
void CmdTimer();
void CmdTips();
void CmdVerify();
