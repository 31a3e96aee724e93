@echo off
rem Makes the plug-ins beside this file known to Windows and to Harbourline. With /u Windows forgets them again.
setlocal
set settings=HKCU\Software\Harbourline\RouterSection
set deed=add
if /i "%~1"=="/u" set deed=remove
set failed=0
@PLUG-INS@
if %failed%==1 echo Not everything could be done.
exit /b %failed%

:add
regsvr32 /s "%~dp0%1"
if errorlevel 1 goto :failed
echo %1 is registered.
rem What Harbourline knows or is about to find needs no announcement.
reg query %settings% 2>nul | find " %2" >nul
if not errorlevel 1 exit /b 0
set number=1
:next
reg query %settings% /v RouterPlugIn_%number% >nul 2>nul
if errorlevel 1 goto :announce
set /a number=number+1
if not %number%==101 goto :next
goto :failed
:announce
reg add %settings% /v RouterPlugIn_%number% /d %2 >nul
if errorlevel 1 goto :failed
echo %2 is announced: Harbourline finds it at its next start.
exit /b 0

:remove
regsvr32 /s /u "%~dp0%1"
if errorlevel 1 goto :failed
echo %1 is forgotten.
exit /b 0

:failed
set failed=1
echo %1 is left as it was: something is wrong with it, or with the rights to the registry.
exit /b 1
